#include "ClickFocus.h"

namespace tessarin
{

ClickFocus::ClickFocus (juce::Component& e) : editor (e)
{
    editor.addMouseListener (this, true);
}

ClickFocus::~ClickFocus()
{
    editor.removeMouseListener (this);
}

void ClickFocus::keepFocus()
{
    using Component = juce::Component;
    auto* chosen = Component::getCurrentlyFocusedComponent();

    if (chosen != &editor && ! editor.isParentOf (chosen))
        return;

    // What the window system has to say is there already, and is heard before this.
    juce::MessageManager::callAsync (
        [chosen = Component::SafePointer<Component> (chosen)]
        {
        auto* peer = chosen != nullptr ? chosen->getPeer() : nullptr;
        auto* focused = Component::getCurrentlyFocusedComponent();

        // Anything else that has the keyboard now, such as a menu, took it on purpose.
        if (peer != nullptr && focused != chosen && focused == peer->getLastFocusedSubcomponent())
            chosen->grabKeyboardFocus();
    });
}

} // namespace tessarin
