#include "Toast.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"

namespace tessarin
{

Toast::Toast (const juce::String& textToShow, ToastType typeToShow, bool canBeDismissed)
    : text (textToShow), type (typeToShow), dismissible (canBeDismissed)
{
    setTitle (text);
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
}

void Toast::mouseDown (const juce::MouseEvent& event)
{
    // One pixel to the right of where the word's box begins.
    if (dismissible && juce::roundToInt (event.position.x) >= getWidth() - 69)
        sendChangeMessage();
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
