#include "SpectrumAnalyser.h"

#include "common/Decibels.h"

#include <utility>

namespace luna
{

namespace
{
constexpr auto numBins = 2048;

/** The axis squeezes the upper bins together: how many of them share one point of the path. */
int getBinStep (double frequency) noexcept
{
    if (frequency < 2000.0)
        return 1;

    if (frequency < 5000.0)
        return 2;

    return frequency < 10000.0 ? 5 : 10;
}
} // namespace

SpectrumAnalyser::SpectrumAnalyser (const SpectrumData& sourceToShow) : source (&sourceToShow)
{
    minimumDecibels = -60;
    maximumDecibels = 0;
    decibelLabels = { 0, -12, -24, -36, -48, -60 };

    magnitudes.ensureStorageAllocated (numBins);
    newMagnitudes.ensureStorageAllocated (numBins);
    heldMagnitudes.insertMultiple (0, 0.0f, numBins);

    setTitle ("Spectrum");
    startTimer (33);
}

void SpectrumAnalyser::timerCallback()
{
    if (! isEnabled() || isStale || ! readSource())
        return;

    auto area = spectrumPath.getBounds().getUnion (heldPath.getBounds());
    rebuildPaths();
    area = area.getUnion (spectrumPath.getBounds()).getUnion (heldPath.getBounds());
    repaint (area.getSmallestIntegerContainer().expanded (1).getIntersection (plot));
}

void SpectrumAnalyser::mouseDown (const juce::MouseEvent&)
{
    heldMagnitudes.fill (0.0f);
    refresh();
}

juce::Point<float> SpectrumAnalyser::getPointOf (double frequency, float magnitude) const noexcept
{
    // Far beyond any axis, and finite for any magnitude.
    constexpr auto largestDb = 1000.0f;
    const auto db = juce::jmin (largestDb, decibels::fromGain (magnitude));
    return { getXOf (frequency), getYOf (static_cast<double> (db)) };
}

void SpectrumAnalyser::paint (juce::Graphics& g)
{
    if ((layers & backgroundLayer) != 0)
    {
        g.setColour (backgroundColour);
        g.fillAll();
    }

    if ((layers & gridLayer) != 0)
        paintGrid (g);

    if ((layers & decibelLabelLayer) != 0)
        paintDecibelLabels (g);

    if ((layers & frequencyLabelLayer) != 0)
        paintFrequencyLabels (g);

    if (isEnabled())
        paintSpectrum (g);

    paintOverlay (g);
}

void SpectrumAnalyser::paintSpectrum (juce::Graphics& g)
{
    const juce::Graphics::ScopedSaveState state (g);
    g.reduceClipRegion (plot.reduced (1));

    if (std::exchange (isStale, false))
    {
        readSource();
        rebuildPaths();
    }

    if ((layers & spectrumLayer) != 0)
    {
        g.setColour (gridColour.withAlpha (fillAlpha));
        g.fillPath (spectrumPath);
    }

    if ((layers & heldLayer) != 0)
    {
        g.setColour (gridColour.withAlpha (fillAlpha));
        juce::PathStrokeType (1.0f).createStrokedPath (heldStroke, heldPath, {},
                                                       g.getInternalContext().getPhysicalPixelScaleFactor());
        g.fillPath (heldStroke);
    }
}

/** Whether anything has changed since the last time. */
bool SpectrumAnalyser::readSource()
{
    const auto oldRate = sampleRate;
    newMagnitudes.clearQuick();

    {
        const juce::ScopedLock scope (source->lock);
        newMagnitudes.addArray (source->magnitudes);
        sampleRate = source->sampleRate;
    }

    // Before the source is prepared, it holds nothing.
    newMagnitudes.resize (numBins);

    const auto isNew = newMagnitudes != magnitudes || ! juce::exactlyEqual (sampleRate, oldRate);
    magnitudes.swapWith (newMagnitudes);

    for (auto i = 0; i < numBins; ++i)
        heldMagnitudes.setUnchecked (i, juce::jmax (heldMagnitudes[i], magnitudes[i]));

    return isNew;
}

void SpectrumAnalyser::rebuildPaths()
{
    spectrumPath.clear();
    heldPath.clear();

    const auto add = [] (juce::Path& path, int bin, juce::Point<float> point)
    {
        if (bin == 0)
            path.startNewSubPath (point);
        else
            path.lineTo (point);
    };

    auto frequency = 0.0;

    for (auto i = 0; i < numBins && frequency <= maxFrequency; i += getBinStep (frequency))
    {
        frequency = sampleRate / numBins * i;
        add (spectrumPath, i, getPointOf (frequency, magnitudes[i]));

        if ((layers & heldLayer) != 0)
            add (heldPath, i, getPointOf (frequency, heldMagnitudes[i]));
    }

    spectrumPath.lineTo (plot.getBottomRight().toFloat());
    spectrumPath.lineTo (plot.getBottomLeft().toFloat());
    spectrumPath.closeSubPath();
}

} // namespace luna
