#include "common/ColourIds.h"
#include "dsp/curves/HardClipper.h"
#include "dsp/curves/SoftClipper.h"
#include "look/TessarinLookAndFeel.h"
#include "OffscreenWindow.h"
#include "Pixels.h"
#include "support/Messages.h"
#include "widgets/SaturatorGraph.h"
#include "widgets/SpectrumAnalyser.h"
#include "widgets/WaveformGraph.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

using namespace luna;
using juce::Colour;
using juce::Rectangle;
using pixels::areNear;
using pixels::black;
using pixels::hasInk;
using ViewMode = SaturatorGraph::ViewMode;

namespace
{
constexpr auto infinity = std::numeric_limits<float>::infinity();
constexpr auto notANumber = std::numeric_limits<float>::quiet_NaN();

int roundToInt (double value)
{
    return static_cast<int> (std::lround (value));
}

class Graphs : public testing::Test
{
protected:
    tessarin::DLAF shared;
    const Colour text = shared.lookAndFeel.findColour (ColourIds::textColourId);
    const Colour primary = shared.lookAndFeel.findColour (ColourIds::primaryColourId);
    const Colour ground = shared.lookAndFeel.findColour (ColourIds::backgroundColourId);
    const Colour disabledText = shared.lookAndFeel.findColour (ColourIds::disabledTextColourId);
    const juce::Font font { juce::FontOptions (11.0f) };
};

struct WildCurve final : CurveSaturator<WildCurve>
{
    void setParameter (float, int) override {}

    static float shape (float x) { return x < 0.1f ? notANumber : infinity; }
};

/** A graph with a plot of 200 by 200 at (20, 20), and a clipper at -6 dB. */
class Curve : public Graphs
{
protected:
    Curve()
    {
        hard.setParameter (-6.0f, 0);
        graph->saturator = &hard;
        graph->setSize (240, 240);
    }

    juce::Image draw() { return OffscreenWindow (*graph).render(); }

    bool hasCurveAt (int x, double y) { return areNear (draw().getPixelAt (x, roundToInt (y)), primary); }

    static double yOf (double db) { return 20.0 + 200.0 * (1.0 - (db + 30.0) / 36.0); }

    HardClipper hard;
    std::unique_ptr<SaturatorGraph> graph = std::make_unique<SaturatorGraph>();
};

/** Two taps of 100 points in a graph whose axis has two pixels per decibel. */
class Waveform : public Graphs
{
protected:
    Waveform()
    {
        history.addTap (0.0f, ColourIds::primaryColourId, WaveformTap::filledBars);
        history.addTap (100.0f, ColourIds::textColourId, WaveformTap::line);
        history.prepare (48000.0);
        graph.setSize (130, 94);
    }

    WaveformHistory history;
    WaveformGraph graph { history };
};
} // namespace

TEST_F (Graphs, FillASpectrumBelowItsMagnitudes)
{
    SpectrumData data;
    SpectrumAnalyser graph { data };
    data.prepare (48000.0);
    graph.setSize (640, 240);
    graph.layers = SpectrumAnalyser::spectrumLayer;

    for (auto bin = 60; bin <= 68; ++bin)
        data.magnitudes.set (bin, 0.5f);

    // The plot has 600 by 200 pixels at (20, 20), and its axes run from 17 Hz and from -60 dB to 0.
    const auto xOfBin = [] (int bin)
    {
        const auto frequency = bin * 48000.0 / 2048.0;
        return roundToInt (20.0 + 600.0 / std::log10 (1297.0) * std::log10 (frequency / 17.0));
    };
    const auto top = static_cast<int> (20.0 - 20.0 * std::log10 (0.5) * 200.0 / 60.0);
    const auto filled = black.overlaidWith (text.withAlpha (0.5f));
    const auto draw = [&graph] { return OffscreenWindow (graph).render(); };
    const auto image = draw();

    EXPECT_EQ (image.getPixelAt (xOfBin (64), top - 1), black);
    EXPECT_TRUE (areNear (image.getPixelAt (xOfBin (64), top + 1), filled));
    EXPECT_TRUE (areNear (image.getPixelAt (xOfBin (64), 218), filled));
    EXPECT_EQ (image.getPixelAt (xOfBin (64), 219), black) << "the plot's border stays free";
    EXPECT_FALSE (hasInk (image, { 0, 0, xOfBin (59) - 1, 240 }));
    EXPECT_FALSE (hasInk (image, { xOfBin (69) + 1, 0, 640 - xOfBin (69) - 1, 240 }));

    data.magnitudes.fill (notANumber);
    EXPECT_FALSE (hasInk (draw(), { 0, 0, 640, 240 }));
    data.magnitudes.fill (infinity);
    EXPECT_TRUE (areNear (draw().getPixelAt (300, 21), filled));
    graph.setEnabled (false);
    EXPECT_FALSE (hasInk (draw(), { 0, 0, 640, 240 }));
}

TEST_F (Curve, RisesFromLeftToRightInBothViews)
{
    for (const auto column : { 10, 60, 110, 150, 190 })
    {
        const auto db = -30.0 + 36.0 * column / 200.0, x = -1.2 + 2.4 * column / 200.0;
        const auto limit = std::pow (10.0, -0.3);
        const auto clipped = std::fmax (-limit, std::fmin (x, limit));

        graph->setViewMode (ViewMode::decibels);
        EXPECT_TRUE (hasCurveAt (20 + column, yOf (std::fmin (db, -6.0)))) << column;
        graph->setViewMode (ViewMode::amplitude);
        EXPECT_TRUE (hasCurveAt (20 + column, 20.0 + 200.0 * (1.0 - (clipped + 1.2) / 2.4))) << column;
        EXPECT_FALSE (hasCurveAt (20 + column, 25.0 + 200.0 * (1.0 - (clipped + 1.2) / 2.4))) << column;
    }
}

TEST_F (Curve, DrawsItsGridAndLabelsInBothViews)
{
    graph->saturator = nullptr;

    for (const auto& [mode, isOn, first, last, step, start, size] :
         { std::tuple { ViewMode::amplitude, true, -1, 1, 1, -1.2, 2.4 },
           { ViewMode::decibels, false, -30, 6, 6, -30.0, 36.0 },
           { ViewMode::decibels, true, -30, 6, 6, -30.0, 36.0 } })
    {
        graph->setEnabled (isOn);
        graph->setViewMode (mode);
        const auto colour = isOn ? text : disabledText;
        const auto image = draw();
        auto expected = pixels::drawn (image, ground, [] (auto&) {});
        juce::Graphics g (expected);
        g.setFont (font);

        for (auto value = first; value <= last; value += step)
        {
            const auto distance = 200.0 * (value - start) / size;
            const auto x = roundToInt (20.0 + distance), y = roundToInt (220.0 - distance);
            g.setColour (colour);
            g.drawText (juce::String (value), x - 10, 3, 20, 16, juce::Justification::centred, false);
            g.drawText (juce::String (value), 220, y - 8, 20, 16, juce::Justification::centred, false);
            g.setColour (colour.withAlpha (0.3f));
            g.fillRect (20, y, 200, 1);
            g.fillRect (x, 20, 1, 200);
        }

        EXPECT_EQ (pixels::difference (image, expected), Rectangle<int>()) << first << isOn;
    }
}

TEST_F (Curve, StandsOutFromTheDashedLineOfWhatGoesInUnchanged)
{
    // Flat at y = 86.7, three pixels thick, or at 33 and two.
    EXPECT_EQ (pixels::marks (draw(), true, 195, { 80, 95 }, ground), (std::vector { 85, 86, 87, 88 }));

    // Up the diagonal, a dash and a gap take 7 columns.
    const auto image = draw();
    auto numDashes = 0;
    auto wasInk = true;

    for (auto column = 150; column < 195; ++column)
    {
        const auto isInk = hasInk (image, { 20 + column, 219 - column, 1, 2 }, ground);
        numDashes += isInk && ! wasInk ? 1 : 0;
        wasInk = isInk;
    }

    EXPECT_NEAR (numDashes, 45.0 / 7.07, 1.5);
    graph->setSize (99, 99);
    EXPECT_EQ (pixels::marks (draw(), true, 90, { 25, 45 }, ground), (std::vector { 32, 33 }));
}

TEST_F (Curve, IsFilledUpToTheLevel)
{
    const auto fill = ground.overlaidWith (text.withAlpha (0.5f));
    const auto isFilled = [&] (int x, int y) { return areNear (draw().getPixelAt (x, y), fill); };

    EXPECT_FALSE (isFilled (24, 219));

    // 0.3 is -10.46 dB, so 108 columns.
    hard.envelope = 0.3f;
    EXPECT_TRUE (isFilled (127, 214));
    EXPECT_FALSE (isFilled (128, 214));

    // Outwards from the centre: above its line at the right, below it at the left.
    graph->setViewMode (ViewMode::amplitude);
    hard.envelope = 0.65f;
    EXPECT_TRUE (isFilled (173, 117) && isFilled (66, 123));
    EXPECT_FALSE (isFilled (174, 117) || isFilled (65, 123) || isFilled (173, 123) || isFilled (66, 117));

    for (const auto level : { 1.2f, infinity })
        EXPECT_EQ (graph->getLevelArea (level), graph->plot) << level;

    EXPECT_TRUE (graph->getLevelArea (notANumber).isEmpty());
}

TEST_F (Curve, IsCompactBelowAWidthOf100)
{
    graph->setSize (100, 100);
    EXPECT_EQ (graph->plot, Rectangle<int> (20, 20, 60, 60));
    graph->setSize (99, 99);
    EXPECT_EQ (graph->plot, Rectangle<int> (0, 0, 99, 99));

    // The reference line stands at +1 dB.
    const auto y = static_cast<int> (99.0 * (1.0 - 31.0 / 36.0));
    EXPECT_TRUE (hasInk (draw(), { 0, y - 1, 40, 3 }, ground));
    EXPECT_FALSE (hasInk (draw(), { 0, y + 3, 40, 10 }, ground));
    graph->saturator = nullptr;
    EXPECT_FALSE (hasInk (draw(), { 0, 0, 99, 99 }, ground));
}

TEST_F (Curve, FollowsItsSaturator)
{
    EXPECT_TRUE (hasCurveAt (200, yOf (-6.0)));

    // Another one whose last change some graph has seen already.
    SoftClipper soft;
    soft.setParameter (-12.0f, 0);
    soft.seenChangeCount = soft.changeCount;
    graph->saturator = &soft;
    EXPECT_TRUE (hasCurveAt (200, yOf (-12.0)));

    WildCurve wild;
    graph->saturator = &wild;
    EXPECT_TRUE (hasCurveAt (30, 219.0) && hasCurveAt (200, 20.0));
    graph->setViewMode (ViewMode::amplitude);
    EXPECT_TRUE (hasCurveAt (30, 219.0) && hasCurveAt (200, 20.0));
}

TEST_F (Curve, OffersItsViewsOnARightClickOnly)
{
    std::vector<ViewMode> picked;
    graph->onViewModeChange = [&] (ViewMode mode) { picked.push_back (mode); };
    OffscreenWindow window (*graph);
    const auto opensMenu = [&] (int button)
    {
        window.clickMouse (*graph, { 100, 100 }, button);
        return juce::ModalComponentManager::getInstance()->getNumModalComponents() > 0;
    };

    EXPECT_FALSE (opensMenu (juce::ModifierKeys::rightButtonModifier));
    graph->menuEnabled = true;
    EXPECT_FALSE (opensMenu (juce::ModifierKeys::leftButtonModifier));
    ASSERT_TRUE (opensMenu (juce::ModifierKeys::rightButtonModifier));

    const auto pickSecondItem = [&]
    {
        for (const auto key : { juce::KeyPress::downKey, juce::KeyPress::downKey, juce::KeyPress::returnKey })
            window.typeKey (juce::KeyPress (key));
    };

    EXPECT_TRUE (window.render().isValid()); // so that the labels are cached
    pickSecondItem();
    dispatchMessages();
    SaturatorGraph amplitudes;
    amplitudes.saturator = &hard;
    amplitudes.setSize (240, 240);
    amplitudes.setViewMode (ViewMode::amplitude);
    EXPECT_TRUE (pixels::difference (window.render(), OffscreenWindow (amplitudes).render()).isEmpty());
    EXPECT_EQ (picked, std::vector { ViewMode::amplitude });
    EXPECT_EQ (graph->viewMode, ViewMode::amplitude);

    // The graph may go while its menu is open, and after a choice that has not arrived yet.
    for (const auto hasPicked : { false, true })
    {
        ASSERT_TRUE (opensMenu (juce::ModifierKeys::rightButtonModifier));

        if (hasPicked)
            pickSecondItem();

        graph = std::make_unique<SaturatorGraph>();
        juce::PopupMenu::dismissAllActiveMenus();
        dispatchMessages();
        EXPECT_EQ (picked.size(), 1u);
        graph->menuEnabled = true;
        graph->setSize (240, 240);
        window.addAndMakeVisible (*graph);
    }
}

TEST_F (Waveform, DrawsAColumnPerPointAndTheSweep)
{
    const std::pair<float, int> columns[] { { -infinity, 94 }, { -40.0f, 94 }, { -20.3f, 57 },
                                            { 0.0f, 16 },      { 8.0f, 0 },    { infinity, 0 },
                                            { notANumber, 94 } };
    auto &bars = history.taps.getReference (0), &line = history.taps.getReference (1);
    line.writeIndex = 80;

    for (auto i = 0; i < 7; ++i)
        bars.values.set (10 * i, columns[i].first);

    const auto image = OffscreenWindow (graph).render();

    for (auto i = 0; i < 7; ++i)
        for (auto y = 0; y < 92; ++y)
        {
            const auto shade = primary.interpolatedWith (primary.withMultipliedBrightness (0.5f),
                                                         static_cast<float> (y) / 94.0f);
            EXPECT_EQ (areNear (image.getPixelAt (10 * i, y), shade, 4), y >= columns[i].second)
                << columns[i].first << " dB at " << y;
        }

    EXPECT_EQ (pixels::runs (image, true, 80), (pixels::Runs { { 0, text.getARGB() } }));
    EXPECT_TRUE (hasInk (image, { 85, 93, 10, 1 })) << "the other tap's silence, at the bottom";
    line.values.fill (-20.0f);
    EXPECT_TRUE (hasInk (OffscreenWindow (graph).render(), { 85, 55, 10, 2 }));
    graph.setEnabled (false);
    EXPECT_FALSE (hasInk (OffscreenWindow (graph).render(), { 85, 55, 10, 2 }));
}

TEST_F (Waveform, HasAScaleAtItsRight)
{
    EXPECT_EQ (history.taps.getReference (0).points, 100) << "beside the scale";

    // Off, it shows the scale alone.
    graph.setEnabled (false);
    const auto image = OffscreenWindow (graph).render();
    const auto expected = pixels::drawn (
        image, black,
        [this] (auto& g)
        {
            g.setFont (font);

            for (auto db = -36; db <= 6; db += 6)
            {
                const auto y = 16 - 2 * db;
                g.setColour (text);
                g.drawText (juce::String (db), 0, y - 10, 125, 20, juce::Justification::centredRight, false);
                g.setColour (text.withAlpha (static_cast<juce::uint8> (0x1a)));
                g.fillRect (0, y, 100, 1);
            }
        });
    EXPECT_EQ (pixels::difference (image, expected), Rectangle<int>());
}
