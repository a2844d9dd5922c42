#include "editor/WindowEventPump.h"

#include "support/Messages.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <gtest/gtest.h>

TEST (WindowEventPump, BringsAnEventThatTheXLibraryTookFromTheConnection)
{
    ASSERT_FALSE (juce::Desktop::getInstance().getDisplays().displays.isEmpty()) << "this needs a screen";

    // Nothing in it moves, whose frames would bring the event too.
    juce::Component window;
    window.setBounds (200, 200, 100, 100);
    window.addToDesktop (juce::ComponentPeer::windowIsTemporary);
    window.setVisible (true);
    juce::Desktop::setMousePosition ({ 20, 20 });

    for (auto i = 0; i < 5; ++i)
        dispatchMessages();

    ASSERT_FALSE (window.isMouseOver());

    // The server answers with the event and the position at once, and the library reads both.
    juce::Desktop::setMousePosition (window.getScreenBounds().getCentre());
    ASSERT_EQ (juce::Desktop::getMousePosition(), window.getScreenBounds().getCentre());

    const tessarin::WindowEventPump pump (window);

    for (auto i = 0; i < 50 && ! window.isMouseOver(); ++i)
        dispatchMessages();

    EXPECT_TRUE (window.isMouseOver());
}
