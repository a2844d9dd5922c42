#include "common/ColourIds.h"
#include "dsp/curves/SoftClipper.h"
#include "look/TessarinLookAndFeel.h"
#include "OffscreenWindow.h"
#include "Pixels.h"
#include "widgets/LevelMeter.h"
#include "widgets/SaturatorGraph.h"
#include "widgets/SpectrumAnalyser.h"
#include "widgets/WaveformGraph.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using namespace luna;

namespace
{
/** A widget that moves, painted frame by frame as on a screen: what it does not ask for stays as it was. */
class PartialPaint : public testing::TestWithParam<float>
{
protected:
    /** After each frame, the picture is that of a window in which all is painted at once. */
    template <typename Widget>
    void expectWholePictures (Widget& widget, int width, int height, const std::function<void (int)>& move)
    {
        juce::Component holder;
        holder.setSize (juce::roundToInt (GetParam() * static_cast<float> (width)),
                        juce::roundToInt (GetParam() * static_cast<float> (height)));
        holder.addAndMakeVisible (widget);
        widget.setSize (width, height);
        widget.setTransform (juce::AffineTransform::scale (GetParam()));
        OffscreenWindow screen (holder);

        for (auto frame = 0; frame < 60; ++frame)
        {
            const auto parts = screen.render();
            const auto whole = screen.createComponentSnapshot (screen.getLocalBounds());
            ASSERT_EQ (pixels::difference (parts, whole), juce::Rectangle<int>()) << "frame " << frame;
            move (frame);
            widget.timerCallback();
        }
    }

    /** Rises, falls and stands still. */
    static float levelAt (int frame)
    {
        return frame > 40 ? 0.0f : std::abs (std::sin (static_cast<float> (frame) * 0.7f)) * 1.1f;
    }

    tessarin::DLAF shared;
};

TEST_P (PartialPaint, OfTheWaveform)
{
    WaveformHistory history;
    history.addTap (0.0f, ColourIds::primaryColourId, WaveformTap::filledBars);
    history.addTap (100.0f, ColourIds::textColourId, WaveformTap::line);
    history.prepare (48000.0);
    WaveformGraph graph { history };

    expectWholePictures (graph, 230, 94,
                         [&] (int frame)
                         {
                             std::vector<float> samples (6000, levelAt (frame));
                             const float* channels[] { samples.data() };

                             for (auto tap : { 0, 1 })
                                 history.push (tap, 1, channels, 0, static_cast<int> (samples.size()));
                         });
}

TEST_P (PartialPaint, OfACurve)
{
    for (const auto mode : { SaturatorGraph::ViewMode::decibels, SaturatorGraph::ViewMode::amplitude })
    {
        SoftClipper curve;
        curve.setParameter (-6.0f, 0);
        SaturatorGraph graph;
        graph.saturator = &curve;
        graph.setViewMode (mode);

        expectWholePictures (graph, 240, 240,
                             [&] (int frame)
                             {
                                 curve.envelope = levelAt (frame);

                                 if (frame % 16 == 15)
                                 {
                                     curve.setParameter (static_cast<float> (-frame) / 5.0f, 0);
                                     curve.raiseChangeCount();
                                 }
                             });
    }
}

TEST_P (PartialPaint, OfAMeter)
{
    LevelChannel channel;
    channel.prepare (48000.0);
    temp::LevelMeter meter (&channel);

    expectWholePictures (meter, 20, 200,
                         [&] (int frame)
                         {
                             for (auto i = 0; i < 3000; ++i)
                                 channel.processSample (levelAt (frame));
                         });
}

TEST_P (PartialPaint, OfASpectrum)
{
    SpectrumData data;
    data.prepare (48000.0);
    SpectrumAnalyser graph (data);

    expectWholePictures (graph, 640, 240,
                         [&] (int frame)
                         {
                             for (auto i = 0; i < data.magnitudes.size(); ++i)
                                 data.magnitudes.set (i, levelAt (frame)
                                                             / static_cast<float> (1 + (i * frame) % 37));
                         });
}

/** Half of the light shines through; two coats would show. */
struct ThinCoat final : juce::Component
{
    void paint (juce::Graphics& g) override
    {
        tiles.paint (g,
                     [this, &g] (juce::Range<int>)
                     {
                         g.setColour (juce::Colours::white.withAlpha (0.5f));
                         g.fillRect (getLocalBounds());
                     });
    }

    PaintTiles tiles { *this };
};

TEST (PaintTiles, CoverEachPixelOnceAtAnyScaleAndPlace)
{
    for (const auto scale : { 1.0f, 1.1f, 1.25f, 1.5f, 2.0f, 0.75f })
    {
        juce::Component parent, holder;
        ThinCoat coat;
        parent.setSize (250, 50);
        holder.setBounds (0, 0, 110, 20);
        holder.setTransform (juce::AffineTransform::scale (scale));
        parent.addAndMakeVisible (holder);
        holder.addAndMakeVisible (coat);
        coat.setBounds (3, 1, 100, 15);

        const auto row = pixels::runs (OffscreenWindow (parent).render(), false, 8);
        ASSERT_GE (row.size(), 3u) << scale;

        // Ground, coat, ground; at either end of the coat a pixel may be cut.
        EXPECT_LE (row.size(), 5u) << scale;
    }
}

INSTANTIATE_TEST_SUITE_P (Scales, PartialPaint, testing::Values (1.0f, 1.5f, 2.0f));
} // namespace
