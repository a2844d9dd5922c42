#include "LogGraphBase.h"

#include "common/ColourIds.h"

#include <cmath>

namespace luna
{

namespace
{
constexpr auto margin = 20;
constexpr auto labelHeight = 20;
constexpr auto labelFontHeight = 11.0f;
} // namespace

LogGraphBase::LogGraphBase()
    : frequencyLines { 20,  30,  40,  50,   60,   70,   80,   90,   100,  200,  300,  400,  500,   600,
                       700, 800, 900, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000, 9000, 10000, 20000 },
      frequencyLabels { 20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000 },
      narrowFrequencyLabels { 20, 100, 1000, 5000, 20000 }
{
    readColours();
}

void LogGraphBase::resized()
{
    plot = { margin, margin, juce::jmax (0, getWidth() - 2 * margin),
             juce::jmax (0, getHeight() - 2 * margin) };
    isStale = true;
    plotChanged();
}

void LogGraphBase::readColours()
{
    backgroundColour = findColour (ColourIds::graphBackgroundColourId);
    gridColour = findColour (ColourIds::graphGridColourId);
    gridTextColour = findColour (ColourIds::graphGridTextColourId);
    labelColour = findColour (ColourIds::graphLabelColourId);
    gridDrawColour = dimmedIfDisabled (gridColour);
    refresh();
}

void LogGraphBase::refresh()
{
    isStale = true;
    repaint();
}

juce::Colour LogGraphBase::dimmedIfDisabled (juce::Colour colour) const
{
    return isEnabled() ? colour : colour.darker (0.4f);
}

double LogGraphBase::getDecades() const noexcept
{
    // The quotient is a whole number, cut: 1297 by default.
    return std::log10 (maxFrequency / minFrequency);
}

float LogGraphBase::getXOf (double frequency) const noexcept
{
    const auto left = static_cast<double> (plot.getX());
    const auto x = left + plot.getWidth() / getDecades() * std::log10 (frequency / minFrequency);

    // The order of the tests puts NaN, as from an empty plot, at the left edge.
    return static_cast<float> (x > left ? juce::jmin (x, static_cast<double> (plot.getRight())) : left);
}

float LogGraphBase::getYOf (double db) const noexcept
{
    const auto height = static_cast<double> (plot.getHeight());
    return static_cast<float> (plot.getBottom()
                               - (db - minimumDecibels) * height / (maximumDecibels - minimumDecibels));
}

void LogGraphBase::paintGrid (juce::Graphics& g) const
{
    constexpr auto strong = 0.5f;
    constexpr auto weak = 0.2f;
    constexpr auto decibelsBetweenLines = 3;

    g.setColour (dimmedIfDisabled (gridTextColour));
    g.drawRect (plot, 1);

    for (const auto frequency : frequencyLines)
    {
        if (frequency > maxFrequency)
            continue;

        g.setColour (gridDrawColour.withAlpha (frequencyLabels.contains (frequency) ? strong : weak));
        g.fillRect (static_cast<int> (getXOf (frequency)), plot.getY(), 1, plot.getHeight());
    }

    for (auto db = minimumDecibels; db <= maximumDecibels; ++db)
    {
        if (db % decibelsBetweenLines != 0)
            continue;

        // The lowest line would lie just below the plot.
        const auto y = static_cast<int> (getYOf (db)) - (db == minimumDecibels ? 1 : 0);
        g.setColour (gridDrawColour.withAlpha (db == 0 ? strong : weak));
        g.fillRect (plot.getX(), y, plot.getWidth(), 1);
    }
}

void LogGraphBase::paintDecibelLabels (juce::Graphics& g) const
{
    constexpr auto decibelsBetweenLabels = 6;

    g.setColour (dimmedIfDisabled (labelColour));
    g.setFont (labelFontHeight);

    for (const auto db : decibelLabels)
        paintDecibelLabel (g, db);

    if (decibelLabels.isEmpty())
        for (auto db = minimumDecibels; db <= maximumDecibels; db += decibelsBetweenLabels)
            paintDecibelLabel (g, db);
}

void LogGraphBase::paintDecibelLabel (juce::Graphics& g, int db) const
{
    constexpr auto gap = 2;
    g.drawText (juce::String (db), 0, juce::roundToInt (getYOf (db)) - labelHeight / 2, plot.getX() - gap,
                labelHeight, juce::Justification::centredRight, false);
}

void LogGraphBase::paintFrequencyLabels (juce::Graphics& g) const
{
    constexpr auto labelWidth = 40;
    constexpr auto smallestFullWidth = 400;

    // In most frames the plot alone is painted anew.
    if (g.getClipBounds().getBottom() <= plot.getBottom())
        return;

    g.setColour (dimmedIfDisabled (labelColour));
    g.setFont (labelFontHeight);

    for (const auto frequency : getWidth() < smallestFullWidth ? narrowFrequencyLabels : frequencyLabels)
    {
        const auto text =
            frequency < 1000 ? juce::String (frequency) + "Hz" : juce::String (frequency / 1000) + "kHz";
        g.drawText (text, juce::roundToInt (getXOf (frequency)) - labelWidth / 2, plot.getBottom(),
                    labelWidth, labelHeight, juce::Justification::centred, false);
    }
}

} // namespace luna
