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
    /** After each frame, the picture is that of a second widget, which is painted at once. */
    template <typename Widget>
    void expectWholePictures (Widget& widget, Widget& second, int width, int height,
                              const std::function<void (int)>& move)
    {
        pixels::Ground holder, secondHolder;
        // At other scales a bar ends between two pixels, and JUCE rounds their mixture by what else is painted.
        const auto tolerance = juce::exactlyEqual (GetParam(), std::round (GetParam())) ? 0 : 2;

        OffscreenWindow screen (show (widget, holder, width, height));
        OffscreenWindow secondScreen (show (second, secondHolder, width, height));

        for (auto frame = 0; frame < 60; ++frame)
        {
            if (auto* picture = second.getCachedComponentImage())
                picture->releaseResources();

            const auto whole = secondScreen.createComponentSnapshot (secondScreen.getLocalBounds());
            ASSERT_EQ (pixels::difference (screen.render(), whole, tolerance), juce::Rectangle<int>())
                << "frame " << frame;
            move (frame);
            widget.timerCallback();
            second.timerCallback();
        }
    }

    /** At a place that is no whole pixel at every scale. */
    static juce::Component& show (juce::Component& widget, juce::Component& holder, int width, int height)
    {
        holder.setSize (juce::roundToInt (GetParam() * static_cast<float> (width)) + 8,
                        juce::roundToInt (GetParam() * static_cast<float> (height)) + 8);
        holder.addAndMakeVisible (widget);
        widget.setBounds (3, 1, width, height);
        widget.setTransform (juce::AffineTransform::scale (GetParam()));
        return holder;
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
    WaveformGraph graph { history }, second { history };

    expectWholePictures (graph, second, 230, 94,
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
        SoftClipper curve, secondCurve;
        SaturatorGraph graph, second;
        graph.saturator = &curve;
        second.saturator = &secondCurve;

        for (auto* each : { &graph, &second })
            each->setViewMode (mode);

        expectWholePictures (graph, second, 240, 240,
                             [&] (int frame)
                             {
                                 for (auto* each : { &curve, &secondCurve })
                                 {
                                     each->envelope = levelAt (frame);

                                     if (frame % 16 == 0)
                                     {
                                         each->setParameter (static_cast<float> (-frame) / 5.0f - 3.0f, 0);
                                         each->raiseChangeCount();
                                     }
                                 }
                             });
    }
}

TEST_P (PartialPaint, OfAMeter)
{
    LevelChannel channel;
    channel.prepare (48000.0);
    temp::LevelMeter meter (&channel), second (&channel);

    expectWholePictures (meter, second, 20, 200,
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
    SpectrumAnalyser graph (data), second (data);

    expectWholePictures (graph, second, 640, 240,
                         [&] (int frame)
                         {
                             for (auto i = 0; i < data.magnitudes.size(); ++i)
                                 data.magnitudes.set (i, levelAt (frame)
                                                             / static_cast<float> (1 + (i * frame) % 37));
                         });
}

INSTANTIATE_TEST_SUITE_P (Scales, PartialPaint, testing::Values (0.75f, 1.0f, 1.25f, 1.5f, 2.0f));
} // namespace
