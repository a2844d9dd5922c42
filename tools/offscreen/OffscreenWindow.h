#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** A window that is on no screen: it draws into images, and mouse and keys go through JUCE's own event path,
    focus and hover included. For pictures of widgets and for tests; needs no display, but for a mouse that
    moves over widgets with a cursor of their own. Message thread.

    Positions are in pixels of the target component.
*/
class OffscreenWindow : public juce::Component
{
public:
    /** Shows `content` at its size; it must outlive the window. */
    explicit OffscreenWindow (juce::Component& content);
    ~OffscreenWindow() override;

    void moveMouse (juce::Component& target, juce::Point<int> position);

    /** A press, and further down the same button's release, where the mouse is moved first. */
    void pressMouse (juce::Component& target, juce::Point<int> position,
                     int button = juce::ModifierKeys::leftButtonModifier);
    void dragMouse (juce::Component& target, juce::Point<int> position);
    void releaseMouse();
    void clickMouse (juce::Component& target, juce::Point<int> position,
                     int button = juce::ModifierKeys::leftButtonModifier);

    /** To the focused component. */
    void typeKey (const juce::KeyPress& key);

    /** At scale 1 as a screen has it: what nobody asked to repaint stays as it was. */
    [[nodiscard]] juce::Image render (float scale = 1.0f);

    juce::ComponentPeer* createNewPeer (int styleFlags, void* nativeWindow) override;

private:
    void sendMouse (juce::Point<float> position);

    /** On the screen, where there is one, but never shown: takes the mouse cursors that JUCE sets. */
    juce::Component cursorWindow;

    juce::Point<float> mousePosition;
    int heldButton = 0;

    /** Of the events, in milliseconds. They lie far enough apart that no two presses make a double click. */
    juce::int64 eventTime = juce::Time::currentTimeMillis();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (OffscreenWindow)
};
