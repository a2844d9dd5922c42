#include "LevelMeter.h"

#include "common/ColourIds.h"

namespace luna::temp
{

LevelMeter::LevelMeter (LevelChannel* channelToShow) : channel (channelToShow)
{
    setOpaque (true);
    startTimer (33);
}

void LevelMeter::timerCallback()
{
    if (channel == nullptr)
        return;

    const auto data = channel->getData();
    peak = data.peak;
    rms = data.rms;
    heldPeak = data.heldPeak;
    maxPeak = data.maxPeak;
    maxRms = data.maxRms;

    repaint();
}

void LevelMeter::enablementChanged()
{
    repaint();
}

double LevelMeter::getBarProportion (double level, bool isRms) const noexcept
{
    constexpr auto sineCrestDb = 3.0;
    return proportionOf (toDecibels (level) + (isRms && ! inverted ? sineCrestDb : 0.0));
}

juce::Rectangle<int> LevelMeter::getBar (double level, bool isRms) const noexcept
{
    const auto proportion = getBarProportion (level, isRms);
    const auto bounds = getLocalBounds();

    if (getWidth() > getHeight())
    {
        const auto length = static_cast<int> (getWidth() * proportion);
        return inverted ? bounds.withTrimmedLeft (length) : bounds.withWidth (length);
    }

    const auto top = getHeight() - static_cast<int> (getHeight() * proportion);
    return inverted ? bounds.withHeight (top) : bounds.withTop (top);
}

int LevelMeter::getHoldLineY() const noexcept
{
    const auto proportion = isOver() ? 1.0 : proportionOf (toDecibels (heldPeak));
    return static_cast<int> (getHeight() - proportion * getHeight());
}

void LevelMeter::paint (juce::Graphics& g)
{
    g.fillAll (findColour (ColourIds::meterBackgroundColourId));

    if (! isEnabled())
        return;

    const auto barColour = findColour (isOver() ? ColourIds::meterOverColourId : ColourIds::meterBarColourId);
    const auto peakBar = getBar (peak, false);

    if (showPeak)
    {
        g.setColour (showRms && ! isOver() ? barColour.darker (0.4f) : barColour);
        g.fillRect (peakBar);
    }

    if (showRms)
    {
        // The 3 dB can lift RMS over the peak.
        const auto isCovered = showPeak && getBarProportion (rms, true) > getBarProportion (peak, false);

        g.setColour (barColour);
        g.fillRect (isCovered ? peakBar : getBar (rms, true));
    }

    constexpr auto smallestHold = 0.01;

    if (showHold && heldPeak > smallestHold && getHeight() >= getWidth())
    {
        g.setColour (findColour (isOver() ? ColourIds::meterOverColourId : ColourIds::meterHoldColourId));
        g.fillRect (0, getHoldLineY(), getWidth(), 1);
    }
}

} // namespace luna::temp
