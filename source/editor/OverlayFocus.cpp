#include "OverlayFocus.h"

#include <utility>

namespace tessarin
{

OverlayFocus::OverlayFocus (juce::Component& e, std::function<bool()> isInUseToAsk)
    : editor (e), isInUse (std::move (isInUseToAsk))
{
    juce::Desktop::getInstance().addFocusChangeListener (this);
}

OverlayFocus::~OverlayFocus()
{
    stop();
    juce::Desktop::getInstance().removeFocusChangeListener (this);
}

void OverlayFocus::watch (std::initializer_list<juce::Component*> overlays)
{
    for (auto* overlay : overlays)
    {
        overlay->addComponentListener (this);
        levels.push_back ({ overlay, nullptr });
    }
}

void OverlayFocus::stop()
{
    for (const auto& level : levels)
        if (level.overlay != nullptr)
            level.overlay->removeComponentListener (this);

    levels.resize (1);
    top = 0;
}

size_t OverlayFocus::findTop() const
{
    auto highest = levels.size() - 1;

    while (highest > 0 && ! levels[highest].overlay->isVisible())
        --highest;

    return highest;
}

/** The content holds whatever no overlay does. */
bool OverlayFocus::holds (const Level& level, const juce::Component& focused) const
{
    if (level.overlay == nullptr)
        return true;

    return level.overlay == &focused || level.overlay->isParentOf (&focused);
}

void OverlayFocus::editorGotFocus (juce::Component::FocusChangeType cause)
{
    // A click on what takes no keys lets go of what had them. The window system, too, brings the editor the focus with
    // a click, which may be one on a button.
    if (cause == juce::Component::focusChangedByMouseClick)
        levels.front().lastFocus = nullptr;

    update();
}

void OverlayFocus::update()
{
    auto* focused = juce::Component::getCurrentlyFocusedComponent();

    if (focused == nullptr || (focused != &editor && ! editor.isParentOf (focused)))
        return;

    const auto before = std::exchange (top, findTop());

    // What comes on top of it finds there what to give back.
    if (top > before)
        keep (levels[before], focused);

    if (top >= before && holds (levels[top], *focused))
        keep (levels[top], focused);
    else
        giveFocusTo (levels[top]);
}

void OverlayFocus::keep (Level& level, juce::Component* focused) const
{
    if (focused != &editor && holds (level, *focused))
        level.lastFocus = focused;
}

void OverlayFocus::giveFocusTo (const Level& level)
{
    const juce::Component::SafePointer<juce::Component> last = level.lastFocus;

    if (last != nullptr && last->isShowing() && last->isEnabled() && last->getWantsKeyboardFocus())
        last->grabKeyboardFocus();
    else if (level.overlay != nullptr)
        level.overlay->grabKeyboardFocus();
}

void OverlayFocus::takeFocus()
{
    top = findTop();

    if (auto* overlay = levels[top].overlay)
        overlay->grabKeyboardFocus();
}

void OverlayFocus::componentVisibilityChanged (juce::Component& overlay)
{
    if (overlay.isVisible() && ! editor.hasKeyboardFocus (true) && isInUse())
    {
        takeFocus();
        return;
    }

    // The next time, it starts afresh.
    for (auto& level : levels)
        if (level.overlay == &overlay && ! overlay.isVisible())
            level.lastFocus = nullptr;

    update();
}

void OverlayFocus::globalFocusChanged (juce::Component*)
{
    update();
}

} // namespace tessarin
