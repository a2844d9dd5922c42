#include "LevelMeterPeakValue.h"

#include "widgets/VisibleInWindow.h"

namespace luna::temp
{

LevelMeterPeakValue::LevelMeterPeakValue (LevelMeter* meterToRead, int kindToShow)
    : meter (meterToRead), kind (kindToShow)
{
    setJustificationType (juce::Justification::centred);
    setText ("-", juce::dontSendNotification);
    startTimer (33);
}

void LevelMeterPeakValue::mouseDown (const juce::MouseEvent&)
{
    if (onClick != nullptr)
        onClick();
}

void LevelMeterPeakValue::timerCallback()
{
    const auto isLive = isEnabled() && isVisibleInWindow (*this);
    const auto level = kind == maximumRms ? meter->maxRms : meter->maxPeak;

    // Most frames bring nothing new, and a text is worth a look before it is made.
    if (isLive == wasLive && juce::exactlyEqual (level, shownLevel))
        return;

    wasLive = isLive;
    shownLevel = level;
    setText (isLive ? format (level, kind) : juce::String ("-"), juce::dontSendNotification);
}

juce::String LevelMeterPeakValue::format (double level, int kind)
{
    // NaN takes this way too.
    if (! (level > 0.0))
        return juce::String::fromUTF8 ("-\xe2\x88\x9e");

    constexpr auto smallestRms = 0.01;
    constexpr auto sineCrestDb = 3.0;
    constexpr auto largestDb = 999.9;

    const auto correction = kind == maximumRms && level > smallestRms ? sineCrestDb : 0.0;
    return juce::String (juce::jmin (largestDb, LevelMeter::toDecibels (level) + correction), 1);
}

/** A label's own handler would read the number for a title, and could not be pressed. */
std::unique_ptr<juce::AccessibilityHandler> LevelMeterPeakValue::createAccessibilityHandler()
{
    juce::AccessibilityActions actions;
    actions.addAction (juce::AccessibilityActionType::press,
                       [this]
                       {
                           if (onClick)
                               onClick();
                       });

    return std::make_unique<juce::AccessibilityHandler> (*this, juce::AccessibilityRole::button,
                                                         std::move (actions));
}

} // namespace luna::temp
