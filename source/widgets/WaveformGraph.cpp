#include "WaveformGraph.h"

namespace luna
{

WaveformGraph::WaveformGraph (WaveformHistory& historyToShow) : history (&historyToShow)
{
    setTitle ("Waveform");
    addAndMakeVisible (background);
    readColours();
    startTimer (33);
}

void WaveformGraph::timerCallback()
{
    repaint();
}

void WaveformGraph::resized()
{
    history->setPoints (juce::jmax (0, getWidth() - labelWidth));
    background.setBounds (getLocalBounds());
    readColours();
}

void WaveformGraph::colourChanged()
{
    readColours();
}

// A new parent may bring another look and feel, which is not announced.
void WaveformGraph::parentHierarchyChanged()
{
    readColours();
}

void WaveformGraph::enablementChanged()
{
    repaint();
}

void WaveformGraph::readColours()
{
    tapStyles.clearQuick();

    for (const auto& tap : history->taps)
        tapStyles.add ({ tap.style, findColour (tap.colourId) });

    if (! tapStyles.isEmpty())
        lineColour = tapStyles.getLast().second;

    background.repaint();
    repaint();
}

juce::String WaveformGraph::getTooltip()
{
    const auto own = SettableTooltipClient::getTooltip();
    return own.isNotEmpty() ? own : background.SettableTooltipClient::getTooltip();
}

int WaveformGraph::getYOf (float db) const noexcept
{
    if (db > range.end)
        return 0;

    // NaN takes this way too.
    if (! (db >= range.start))
        return getHeight();

    const auto height = static_cast<float> (getHeight());
    return juce::roundToInt (height - range.convertTo0to1 (db) * height);
}

void WaveformGraph::paintOverChildren (juce::Graphics& g)
{
    if (! isEnabled() || tapStyles.isEmpty())
        return;

    readHistory();

    for (auto i = 0; i < tapStyles.size(); ++i)
    {
        const auto& [style, colour] = tapStyles.getReference (i);
        const auto& values = tapValues[static_cast<size_t> (i)];

        if (style == WaveformTap::filledBars)
            paintBars (g, values, colour);
        else
            paintLine (g, values, colour);
    }

    g.setColour (lineColour);
    g.fillRect (writeIndex, 0, 1, getHeight());
}

void WaveformGraph::readHistory()
{
    tapValues.resize (static_cast<size_t> (tapStyles.size()));

    // Room for the copies is made before the audio thread has to wait for them.
    for (auto& values : tapValues)
    {
        values.clearQuick();
        values.ensureStorageAllocated (getWidth());
    }

    const juce::ScopedLock scope (history->lock);

    for (size_t i = 0; i < tapValues.size(); ++i)
    {
        const auto& tap = history->taps.getReference (static_cast<int> (i));
        tapValues[i].addArray (tap.values);
        writeIndex = tap.writeIndex;
    }
}

void WaveformGraph::paintBars (juce::Graphics& g, const juce::Array<float>& values, juce::Colour colour)
{
    const auto height = static_cast<float> (getHeight());

    // One outline around all columns: a hundred times cheaper to fill than as many rectangles.
    barPath.clear();
    barPath.startNewSubPath (0.0f, height);

    for (auto i = 0; i < values.size(); ++i)
    {
        const auto y = static_cast<float> (getYOf (values[i]));
        barPath.lineTo (static_cast<float> (i), y);
        barPath.lineTo (static_cast<float> (i + 1), y);
    }

    barPath.lineTo (static_cast<float> (values.size()), height);
    barPath.closeSubPath();

    g.setGradientFill (
        juce::ColourGradient::vertical (colour, 0.0f, colour.withMultipliedBrightness (0.5f), height));
    g.fillPath (barPath);
}

void WaveformGraph::paintLine (juce::Graphics& g, const juce::Array<float>& values, juce::Colour colour)
{
    linePath.clear();

    for (auto i = 0; i < values.size(); ++i)
    {
        const juce::Point<float> point (static_cast<float> (i), static_cast<float> (getYOf (values[i])));

        if (i == 0)
            linePath.startNewSubPath (point);
        else
            linePath.lineTo (point);
    }

    g.setColour (colour);
    g.strokePath (linePath, juce::PathStrokeType (1.0f));
}

} // namespace luna
