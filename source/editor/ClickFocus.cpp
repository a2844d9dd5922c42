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

void ClickFocus::focusWasLost()
{
    takeBackForMenu();

    // A box shows its menu with a message of the click's, which may not have come yet.
    juce::MessageManager::callAsync (
        [focus = juce::WeakReference<ClickFocus> (this)]
        {
            if (focus != nullptr)
                focus->takeBackForMenu();
        });
}

bool ClickFocus::wasJustClicked() const
{
    constexpr auto longestAnswerInMs = 500;
    return juce::Time::getMillisecondCounter() - clickTime < longestAnswerInMs;
}

void ClickFocus::takeBackForMenu()
{
    const auto hasMenu = juce::Component::getNumCurrentlyModalComponents() > 0;
    auto* peer = editor.getPeer();

    // Later, it is the user who goes elsewhere.
    if (! mayTakeBack || ! wasJustClicked() || ! hasMenu || peer == nullptr)
        return;

    mayTakeBack = false;
    peer->grabFocus();
}

} // namespace tessarin
