#include "LevelMeterTicks.h"

#include "common/ColourIds.h"

namespace luna::temp
{

LevelMeterTicks::LevelMeterTicks (const LevelMeter* meterToFollow) : meter (meterToFollow)
{
    setInterceptsMouseClicks (false, false);
}

void LevelMeterTicks::enablementChanged()
{
    repaint();
}

int LevelMeterTicks::getLabelY (int db) const noexcept
{
    const auto height = meter->getHeight();
    return juce::roundToInt (height - meter->proportionOf (db) * height);
}

void LevelMeterTicks::paint (juce::Graphics& g)
{
    constexpr auto labelHeight = 20;
    constexpr auto markLength = 5;
    constexpr auto fontHeight = 11.0f;

    const auto justification = side == 0   ? juce::Justification::centredLeft
                               : side == 1 ? juce::Justification::centredRight
                                           : juce::Justification::centred;

    g.setColour (findColour (isEnabled() ? ColourIds::textColourId : ColourIds::disabledTextColourId));
    g.setFont (fontHeight);

    for (const auto tick : ticks)
    {
        const auto y = getLabelY (tick);
        const auto markY = y + labelHeight / 2;

        if (side != 0)
            g.fillRect (0, markY, markLength, 1);

        if (side != 1)
            g.fillRect (getWidth() - markLength, markY, markLength, 1);

        g.drawText (juce::String (tick), 0, y, getWidth(), labelHeight, justification, false);
    }
}

} // namespace luna::temp
