#include "CategoryBadge.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "widgets/Contrast.h"

namespace tessarin
{

namespace
{
constexpr auto cornerRadius = 3.0f;
constexpr auto textInset = 8;
const auto textColour = juce::Colours::white;

juce::Font makeFont()
{
    return juce::Font (juce::FontOptions (luna::FontHeights::control));
}

void call (const std::function<void()>& callback)
{
    if (callback)
        callback();
}

/** A button that stays down. */
class BadgeAccessibility final : public juce::AccessibilityHandler
{
public:
    explicit BadgeAccessibility (CategoryBadge& badgeToDescribe)
        : AccessibilityHandler (badgeToDescribe, juce::AccessibilityRole::toggleButton,
                                makeActions (badgeToDescribe)),
          badge (badgeToDescribe)
    {
    }

    juce::AccessibleState getCurrentState() const override
    {
        const auto state = AccessibilityHandler::getCurrentState().withCheckable();
        return badge.selected ? state.withChecked() : state;
    }

    juce::String getHelp() const override { return badge.getTooltip(); }

private:
    static juce::AccessibilityActions makeActions (CategoryBadge& badge)
    {
        const auto click = [&badge] { call (badge.onLeftClick); };
        return juce::AccessibilityActions()
            .addAction (juce::AccessibilityActionType::press, click)
            .addAction (juce::AccessibilityActionType::toggle, click);
    }

    CategoryBadge& badge;
};
} // namespace

CategoryBadge::CategoryBadge (const juce::String& textToShow)
    : text (textToShow),
      idealWidth (juce::GlyphArrangement::getStringWidthInt (makeFont(), text) + 2 * textInset)
{
    setTitle (text);
    setWantsKeyboardFocus (true);

    // A click leaves no focus ring behind.
    setMouseClickGrabsKeyboardFocus (false);
}

void CategoryBadge::setSelected (bool shouldBeSelected, juce::NotificationType notification)
{
    if (selected == shouldBeSelected)
        return;

    selected = shouldBeSelected;
    repaint();

    if (auto* handler = getAccessibilityHandler())
        handler->notifyAccessibilityEvent (juce::AccessibilityEvent::valueChanged);

    if (notification != juce::dontSendNotification)
        call (onChange);
}

void CategoryBadge::paint (juce::Graphics& g)
{
    const auto colour =
        findColour (selected ? luna::ColourIds::primaryColourId : luna::ColourIds::disabledTextColourId);

    // Dark enough for the text to stay legible under the mouse.
    const auto fill =
        luna::Contrast::darkenFor (textColour, colour, [] (juce::Colour c) { return c.brighter(); });
    const auto bounds = getLocalBounds().toFloat();
    const auto hasFocus = hasKeyboardFocus (false);

    g.setColour (isUnderMouse ? fill.brighter() : fill);
    g.fillRoundedRectangle (bounds, cornerRadius);

    g.setColour (textColour);

    // In the text's colour, since the highlighted text's would vanish in a light theme.
    if (hasFocus)
        g.drawRoundedRectangle (bounds.reduced (1.0f), cornerRadius, 2.0f);

    // The fills alone are too much alike for some eyes and themes.
    if (selected)
        g.drawRoundedRectangle (bounds.reduced (hasFocus ? 3.5f : 0.5f), cornerRadius, 1.0f);

    g.setFont (makeFont());
    g.drawText (text, getLocalBounds().reduced (textInset - 2, 0), juce::Justification::centred, true);
}

void CategoryBadge::setUnderMouse (bool isNowUnderMouse)
{
    isUnderMouse = isNowUnderMouse;
    repaint();
}

void CategoryBadge::mouseUp (const juce::MouseEvent& event)
{
    if (! contains (event.getPosition()))
        return;

    if (event.mods.isPopupMenu())
        call (onRightClick);
    else if (event.mods.isLeftButtonDown())
        call (onLeftClick);
}

bool CategoryBadge::keyPressed (const juce::KeyPress& key)
{
    if (key == juce::KeyPress::spaceKey || key == juce::KeyPress::returnKey)
    {
        call (onLeftClick);
        return true;
    }

    if (key != juce::KeyPress::deleteKey && key != juce::KeyPress::backspaceKey)
        return false;

    call (onRightClick);
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> CategoryBadge::createAccessibilityHandler()
{
    return std::make_unique<BadgeAccessibility> (*this);
}

} // namespace tessarin
