#include "LevelMeterPeakValue.h"

#include "common/ColourIds.h"
#include "widgets/Contrast.h"
#include "widgets/PressKey.h"
#include "widgets/VisibleInWindow.h"

namespace luna::temp
{

LevelMeterPeakValue::LevelMeterPeakValue (LevelMeter* meterToRead, int kindToShow)
    : meter (meterToRead), kind (kindToShow)
{
    setJustificationType (juce::Justification::centred);
    setText ("-", juce::dontSendNotification);
    setMouseCursor (juce::MouseCursor::PointingHandCursor);
    setWantsKeyboardFocus (true);
    setMouseClickGrabsKeyboardFocus (false);
    setHasFocusOutline (true);
    startTimer (33);
}

void LevelMeterPeakValue::mouseDown (const juce::MouseEvent&)
{
    press();
}

bool LevelMeterPeakValue::keyPressed (const juce::KeyPress& key)
{
    return isPress (key) && press();
}

bool LevelMeterPeakValue::press()
{
    if (onClick)
        onClick();

    return onClick != nullptr;
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
    updateColour();
    setText (isLive ? format (level, kind) : juce::String ("-"), juce::dontSendNotification);
}

/** Above 0 dB, that of the meter, as far as it is legible on the ground that meters stand on. */
void LevelMeterPeakValue::updateColour()
{
    if (! wasLive || ! (toDecibels (shownLevel, kind) > 0.0))
    {
        removeColour (textColourId);
        return;
    }

    setColour (textColourId,
               Contrast::moveAway (findColour (luna::ColourIds::meterOverColourId),
                                   findColour (luna::ColourIds::backgroundColourId), Contrast::required));
}

double LevelMeterPeakValue::toDecibels (double level, int kind)
{
    constexpr auto smallestRms = 0.01;
    constexpr auto sineCrestDb = 3.0;

    const auto correction = kind == maximumRms && level > smallestRms ? sineCrestDb : 0.0;
    return LevelMeter::toDecibels (level) + correction;
}

juce::String LevelMeterPeakValue::format (double level, int kind)
{
    // NaN takes this way too.
    if (! (level > 0.0))
        return juce::String::fromUTF8 ("-\xe2\x88\x9e");

    constexpr auto largestDb = 999.9;
    return juce::String (juce::jmin (largestDb, toDecibels (level, kind)), 1);
}

/** A label's own handler would read the number for a title, and could not be pressed. */
std::unique_ptr<juce::AccessibilityHandler> LevelMeterPeakValue::createAccessibilityHandler()
{
    return std::make_unique<juce::AccessibilityHandler> (
        *this, juce::AccessibilityRole::button,
        juce::AccessibilityActions().addAction (juce::AccessibilityActionType::press, [this] { press(); }));
}

} // namespace luna::temp
