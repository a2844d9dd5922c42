#include "WaveformGraph.h"

#include "widgets/PixelPicture.h"

#include <algorithm>
#include <utility>

namespace luna
{

namespace
{
/** How far a column of the line shows: to its neighbours, and in the joins with them. */
constexpr auto lineReach = 5;
} // namespace

WaveformGraph::WaveformGraph (WaveformHistory& historyToShow) : history (&historyToShow)
{
    setTitle ("Waveform");
    bufferToPixels (*this, PixelPicture::Parts::tiles);
    addAndMakeVisible (background);
    readColours();
    startTimer (33);
}

void WaveformGraph::timerCallback()
{
    if (! isEnabled() || isStale || history->getChangeCount() == shownChangeCount)
        return;

    std::swap (picture, previous);
    readHistory();
    repaintChanges();
}

void WaveformGraph::refresh()
{
    isStale = true;
    repaint();
}

void WaveformGraph::resized()
{
    history->setPoints (juce::jmax (0, getWidth() - labelWidth));
    background.setBounds (getLocalBounds());
    readColours();
}

void WaveformGraph::readColours()
{
    tapStyles.clearQuick();

    for (const auto& tap : history->taps)
        tapStyles.add ({ tap.style, findColour (tap.colourId) });

    if (! tapStyles.isEmpty())
        lineColour = tapStyles.getLast().second;

    background.repaint();
    refresh();
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

    if (std::exchange (isStale, false))
        readHistory();

    paintTaps (g, g.getClipBounds().getHorizontalRange().expanded (2 * lineReach));
    g.setColour (lineColour);
    g.fillRect (picture.writeIndex, 0, 1, getHeight());
}

void WaveformGraph::paintTaps (juce::Graphics& g, juce::Range<int> shown)
{
    for (size_t i = 0; i < picture.taps.size(); ++i)
    {
        const auto& columns = picture.taps[i];
        const auto& [style, colour] = tapStyles.getReference (static_cast<int> (i));
        const auto part = shown.getIntersectionWith ({ 0, static_cast<int> (columns.size()) });

        if (style == WaveformTap::filledBars)
            paintBars (g, columns, part, colour);
        else
            paintLine (g, columns, part, colour);
    }
}

void WaveformGraph::readHistory()
{
    tapValues.resize (static_cast<size_t> (tapStyles.size()));
    picture.taps.resize (tapValues.size());

    // Room for the copies is made before the audio thread has to wait for them.
    for (auto& values : tapValues)
    {
        values.clearQuick();
        values.ensureStorageAllocated (getWidth());
    }

    {
        const juce::ScopedLock scope (history->lock);
        shownChangeCount = history->getChangeCount();

        for (size_t i = 0; i < tapValues.size(); ++i)
        {
            const auto& tap = history->taps.getReference (static_cast<int> (i));
            tapValues[i].addArray (tap.values);
            picture.writeIndex = tap.writeIndex;
        }
    }

    for (size_t i = 0; i < tapValues.size(); ++i)
    {
        picture.taps[i].resize (static_cast<size_t> (tapValues[i].size()));
        std::transform (tapValues[i].begin(), tapValues[i].end(), picture.taps[i].begin(),
                        [this] (float db) { return getYOf (db); });
    }
}

bool WaveformGraph::differsAt (int x) const noexcept
{
    const auto isMarked = x == picture.writeIndex;

    if (isMarked != (x == previous.writeIndex))
        return true;

    const auto column = static_cast<size_t> (x);

    for (size_t i = 0; i < picture.taps.size(); ++i)
        if (column < picture.taps[i].size() && picture.taps[i][column] != previous.taps[i][column])
            return true;

    return false;
}

/** The write position sweeps, so that the columns that differ lie together, but for a frame in which it turns round. */
void WaveformGraph::repaintChanges()
{
    const auto haveSameSize = [] (const Columns& a, const Columns& b) { return a.size() == b.size(); };

    if (isStale || ! std::ranges::equal (picture.taps, previous.taps, haveSameSize))
    {
        repaint();
        return;
    }

    juce::Range<int> run;

    const auto repaintRun = [&]
    {
        if (! run.isEmpty())
            repaint (run.getStart() - lineReach, 0, run.getLength() + 2 * lineReach, getHeight());
    };

    for (auto x = 0; x < getWidth(); ++x)
    {
        if (! differsAt (x))
            continue;

        if (run.isEmpty() || x > run.getEnd() + 2 * lineReach)
        {
            repaintRun();
            run = { x, x + 1 };
        }

        run.setEnd (x + 1);
    }

    repaintRun();
}

void WaveformGraph::paintBars (juce::Graphics& g, const Columns& columns, juce::Range<int> shown,
                               juce::Colour colour)
{
    const auto height = static_cast<float> (getHeight());

    // One outline around all columns: a hundred times cheaper to fill than as many rectangles.
    barPath.clear();
    barPath.startNewSubPath (static_cast<float> (shown.getStart()), height);

    for (auto i = shown.getStart(); i < shown.getEnd(); ++i)
    {
        const auto y = static_cast<float> (columns[static_cast<size_t> (i)]);
        barPath.lineTo (static_cast<float> (i), y);
        barPath.lineTo (static_cast<float> (i + 1), y);
    }

    barPath.lineTo (static_cast<float> (shown.getEnd()), height);
    barPath.closeSubPath();

    g.setGradientFill (
        juce::ColourGradient::vertical (colour, 0.0f, colour.withMultipliedBrightness (0.5f), height));
    g.fillPath (barPath);
}

void WaveformGraph::paintLine (juce::Graphics& g, const Columns& columns, juce::Range<int> shown,
                               juce::Colour colour)
{
    linePath.clear();

    for (auto i = shown.getStart(); i < shown.getEnd(); ++i)
    {
        const juce::Point<float> point (static_cast<float> (i),
                                        static_cast<float> (columns[static_cast<size_t> (i)]));

        if (i == shown.getStart())
            linePath.startNewSubPath (point);
        else
            linePath.lineTo (point);
    }

    g.setColour (colour);
    juce::PathStrokeType (1.0f).createStrokedPath (lineStroke, linePath, {},
                                                   g.getInternalContext().getPhysicalPixelScaleFactor());
    g.fillPath (lineStroke);
}

} // namespace luna
