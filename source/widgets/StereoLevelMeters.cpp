#include "StereoLevelMeters.h"

namespace luna::temp
{

StereoLevelMeters::StereoLevelMeters (Processor* processor, bool showPeakValues, bool showRmsValues)
    : leftMeter (processor != nullptr ? &processor->left : nullptr),
      rightMeter (processor != nullptr ? &processor->right : nullptr),
      leftPeakValue (&leftMeter, LevelMeterPeakValue::maximumPeak),
      rightPeakValue (&rightMeter, LevelMeterPeakValue::maximumPeak),
      leftRmsValue (&leftMeter, LevelMeterPeakValue::maximumRms),
      // Shows the maximum peak in the row of RMS: users know it like this.
      rightRmsValue (&rightMeter, LevelMeterPeakValue::maximumPeak)
{
    onMaxClick = [this]
    {
        for (auto* meter : { &leftMeter, &rightMeter })
            if (meter->channel != nullptr)
                meter->channel->resetMaxima();
    };

    leftMeter.setTooltip ("Meter L: The left channel's levels");
    rightMeter.setTooltip ("Meter R: The right channel's levels");
    leftMeter.setTitle ("Left level");
    rightMeter.setTitle ("Right level");
    addAndMakeVisible (leftMeter);
    addAndMakeVisible (rightMeter);

    addReadOut (leftPeakValue, "Max Peak Value: Click to reset", "Left maximum peak");
    addReadOut (rightPeakValue, "Max Peak Value: Click to reset", "Right maximum peak");
    addReadOut (leftRmsValue, "Max RMS Value: Click to reset", "Left maximum RMS");
    addReadOut (rightRmsValue, "Max RMS Value: Click to reset", "Right maximum peak");
    setReadOutsVisible (showPeakValues, showRmsValues);
}

void StereoLevelMeters::addReadOut (LevelMeterPeakValue& readOut, const juce::String& tooltip,
                                    const juce::String& title)
{
    constexpr auto fontHeight = 11.0f;

    // Five characters in some 20 pixels.
    readOut.setFont (juce::FontOptions (fontHeight));
    readOut.setBorderSize ({});
    readOut.setMinimumHorizontalScale (0.7f);

    readOut.setTooltip (tooltip);
    readOut.setTitle (title);
    readOut.onClick = [this]
    {
        if (onMaxClick != nullptr)
            onMaxClick();
    };

    addChildComponent (readOut);
}

void StereoLevelMeters::setReadOutsVisible (bool peakValues, bool rmsValues)
{
    leftPeakValue.setVisible (peakValues);
    rightPeakValue.setVisible (peakValues);
    leftRmsValue.setVisible (rmsValues);
    rightRmsValue.setVisible (rmsValues);
    layOut();
}

void StereoLevelMeters::resized()
{
    layOut();
}

void StereoLevelMeters::layOut()
{
    constexpr auto rowHeight = 15;
    constexpr auto gap = 5;
    constexpr auto valueGap = 3;

    auto area = getLocalBounds();

    const auto placeRow = [&area] (LevelMeterPeakValue& left, LevelMeterPeakValue& right)
    {
        if (! left.isVisible())
            return;

        auto row = area.removeFromTop (rowHeight);
        const auto valueWidth = juce::jmax (0, (row.getWidth() - valueGap) / 2);
        left.setBounds (row.removeFromLeft (valueWidth));
        right.setBounds (row.removeFromRight (valueWidth));
    };

    placeRow (leftPeakValue, rightPeakValue);
    placeRow (leftRmsValue, rightRmsValue);

    if (leftPeakValue.isVisible() || leftRmsValue.isVisible())
        area.removeFromTop (gap);

    const auto meterWidth = juce::jmax (0, (area.getWidth() - gap) / 2);
    leftMeter.setBounds (area.removeFromLeft (meterWidth));
    rightMeter.setBounds (area.removeFromRight (meterWidth));
}

} // namespace luna::temp
