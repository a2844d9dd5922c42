#include "LevelMeter.h"

#include "common/ColourIds.h"
#include "widgets/RepaintDifference.h"

#include <utility>

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

    if (data == LevelData { peak, rms, heldPeak, maxPeak, maxRms })
        return;

    const auto before = getLook();
    peak = data.peak;
    rms = data.rms;
    heldPeak = data.heldPeak;
    maxPeak = data.maxPeak;
    maxRms = data.maxRms;

    repaintChanges (before, getLook());
}

LevelMeter::Look LevelMeter::getLook() const noexcept
{
    constexpr auto smallestHold = 0.01;

    // The 3 dB can lift RMS over the peak.
    const auto isCovered = showPeak && getBarProportion (rms, true) > getBarProportion (peak, false);
    const auto showsLine = showHold && heldPeak > smallestHold && getHeight() >= getWidth();

    return { getBar (peak, false), getBar (isCovered ? peak : rms, ! isCovered),
             showsLine ? getHoldLineY() : -1, isOver() };
}

void LevelMeter::repaintChanges (const Look& before, const Look& now)
{
    if (now.isOver != before.isOver)
    {
        repaint();
        return;
    }

    for (const auto& [a, b] :
         { std::pair (before.peakBar, now.peakBar), std::pair (before.rmsBar, now.rmsBar) })
        repaintDifference (*this, a, b);

    if (now.holdLine != before.holdLine)
        for (const auto line : { before.holdLine, now.holdLine })
            repaint (0, line, getWidth(), 1);
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
    g.setColour (findColour (ColourIds::meterBackgroundColourId));
    g.fillAll();

    if (! isEnabled())
        return;

    const auto barColour = findColour (isOver() ? ColourIds::meterOverColourId : ColourIds::meterBarColourId);
    const auto look = getLook();

    if (showPeak)
    {
        g.setColour (showRms && ! isOver() ? barColour.darker (0.4f) : barColour);
        g.fillRect (look.peakBar);
    }

    if (showRms)
    {
        g.setColour (barColour);
        g.fillRect (look.rmsBar);
    }

    if (look.holdLine >= 0)
    {
        g.setColour (findColour (isOver() ? ColourIds::meterOverColourId : ColourIds::meterHoldColourId));
        g.fillRect (0, look.holdLine, getWidth(), 1);
    }
}

} // namespace luna::temp
