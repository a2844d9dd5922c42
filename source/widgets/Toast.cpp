#include "Toast.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "widgets/Contrast.h"

namespace tessarin
{

Toast::Toast (const juce::String& textToShow, ToastType typeToShow, bool canBeDismissed)
    : text (textToShow), type (typeToShow), dismissible (canBeDismissed)
{
    setTitle (text);
    setWantsKeyboardFocus (dismissible);
}

void Toast::paint (juce::Graphics& g)
{
    constexpr auto cornerRadius = 5.0f;
    constexpr auto inset = 5;

    g.setColour (findColour (getBackgroundColourId()));
    g.fillRoundedRectangle (getLocalBounds().toFloat(), cornerRadius);

    g.setColour (findColour (luna::ColourIds::toastTextColourId));
    g.setFont (luna::FontHeights::topBar);
    g.drawText (text, inset, inset, juce::jmax (0, getWidth() - 2 * inset),
                juce::jmax (0, getHeight() - 2 * inset), juce::Justification::centredLeft, true);

    if (dismissible)
        g.drawText ("DISMISS", getWidth() - 70, 0, 60, getHeight(), juce::Justification::centred, true);

    if (hasKeyboardFocus (false))
        drawFocusRing (g);
}

/** Around the word, in whichever colour is seen on the toast's. */
void Toast::drawFocusRing (juce::Graphics& g) const
{
    constexpr auto thickness = 2.0f;
    const juce::Rectangle<int> ring (getWidth() - 75, 10, 70, getHeight() - 20);

    g.setColour (luna::Contrast::clearer (findColour (luna::ColourIds::toastTextColourId),
                                          findColour (luna::ColourIds::highlightedTextColourId),
                                          findColour (getBackgroundColourId())));
    g.drawRoundedRectangle (ring.toFloat().reduced (0.5f * thickness), 3.0f, thickness);
}

bool Toast::dismisses (const juce::MouseEvent& event) const
{
    // One pixel to the right of where the word's box begins.
    return dismissible && juce::roundToInt (event.position.x) >= getWidth() - 69;
}

void Toast::mouseDown (const juce::MouseEvent& event)
{
    if (dismisses (event))
        sendChangeMessage();
}

void Toast::mouseMove (const juce::MouseEvent& event)
{
    setMouseCursor (dismisses (event) ? juce::MouseCursor::PointingHandCursor
                                      : juce::MouseCursor::NormalCursor);
}

bool Toast::keyPressed (const juce::KeyPress& key)
{
    using juce::KeyPress;

    const auto isUsed =
        dismissible && ! isDismissed
        && (key == KeyPress::returnKey || key == KeyPress::spaceKey || key == KeyPress::escapeKey);

    if (isUsed)
    {
        isDismissed = true;
        sendChangeMessage();
    }

    return isUsed;
}

std::unique_ptr<juce::AccessibilityHandler> Toast::createAccessibilityHandler()
{
    juce::AccessibilityActions actions;

    if (dismissible)
        actions.addAction (juce::AccessibilityActionType::press, [this] { sendChangeMessage(); });

    const auto role = dismissible ? juce::AccessibilityRole::button : juce::AccessibilityRole::staticText;
    return std::make_unique<juce::AccessibilityHandler> (*this, role, std::move (actions));
}

int Toast::getBackgroundColourId() const
{
    switch (type)
    {
        case toastSuccess: return luna::ColourIds::toastSuccessColourId;
        case toastNotice: return luna::ColourIds::toastNoticeColourId;
        case toastError:
        case toastFatal: break;
    }

    return luna::ColourIds::toastErrorColourId;
}

} // namespace tessarin
