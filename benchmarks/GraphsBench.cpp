// What a frame of each meter and graph costs on the message thread: its timer's work, and the drawing of all
// of it into an image in memory, at its size in a window of the default size.

#include "common/ColourIds.h"
#include "dsp/curves/SoftClipper.h"
#include "Frames.h"
#include "look/TessarinLookAndFeel.h"
#include "Rows.h"
#include "widgets/InputOutputMeters.h"
#include "widgets/SaturatorGraph.h"
#include "widgets/SpectrumAnalyser.h"
#include "widgets/WaveformGraph.h"

#include <memory>

namespace bench
{

namespace
{
/** What every drawn row needs while it runs. Fed half a second of the signal, so that there is much to draw.
    */
struct Picture
{
    template <typename Push>
    static void feed (Push push)
    {
        Feed source (defaultBlockSize);

        for (auto i = 0; i < signal().getNumSamples() / defaultBlockSize; ++i)
            push (source.next());
    }

    void draw (juce::Component& component)
    {
        if (image.getWidth() != component.getWidth() || image.getHeight() != component.getHeight())
            image = { juce::Image::RGB, component.getWidth(), component.getHeight(), true,
                      juce::SoftwareImageType() };

        juce::Graphics g (image);
        component.paintEntireComponent (g, false);
    }

    tessarin::DLAF shared;
    juce::Image image;
};

struct Meters : Picture
{
    Meters()
    {
        levels.prepare (hostRate);
        feed (
            [this] (auto& block)
            {
                levels.input.process (juce::dsp::AudioBlock<float> (block));
                levels.output.process (juce::dsp::AudioBlock<float> (block));
            });
        meters.setSize (170, 382);
    }

    /** A new value in every read-out, as at the start of a song. */
    void drawAll()
    {
        ++frame;

        for (auto* pair : { &meters.inputMeters, &meters.outputMeters })
        {
            pair->leftMeter.timerCallback();
            pair->rightMeter.timerCallback();

            for (auto* value :
                 { &pair->leftPeakValue, &pair->rightPeakValue, &pair->leftRmsValue, &pair->rightRmsValue })
                value->setText (
                    luna::temp::LevelMeterPeakValue::format (1.0 / (1 + frame % 100), value->kind),
                    juce::dontSendNotification);
        }

        draw (meters);
    }

    void drawOne()
    {
        meters.inputMeters.leftMeter.timerCallback();
        draw (meters.inputMeters.leftMeter);
    }

    int frame = 0;
    luna::temp::InputOutputLevelProcessor levels;
    luna::temp::InputOutputMeters meters { &levels };
};

struct Spectrum : Picture
{
    explicit Spectrum (int layers)
    {
        data.prepare (hostRate);
        feed (
            [this] (auto& block)
            {
                for (auto i = 0; i < block.getNumSamples(); ++i)
                    data.pushSample (block.getSample (0, i));
            });
        graph.layers = layers;
        graph.minimumDecibels = -100;
        graph.setSize (1068, 100);
    }

    SpectrumData data;
    luna::SpectrumAnalyser graph { data };
};

struct Saturator : Picture
{
    explicit Saturator (luna::SaturatorGraph::ViewMode mode)
    {
        curve.setParameter (-6.0f, 0);
        curve.setParameter (6.0f, 1);
        curve.envelope = 0.7f;
        graph.saturator = &curve;
        graph.setViewMode (mode);
        graph.setSize (227, 227);
    }

    luna::SoftClipper curve;
    luna::SaturatorGraph graph;
};

struct Waveform : Picture
{
    Waveform()
    {
        history.addTap (0.0f, luna::ColourIds::primaryColourId, WaveformTap::filledBars);
        history.addTap (100.0f, luna::ColourIds::textColourId, WaveformTap::line);
        history.prepare (hostRate);
        graph.setSize (1068, 170);

        // Ten times half a second at levels from low to high fill all columns.
        for (auto pass = 1; pass <= 10; ++pass)
            feed (
                [&] (auto& block)
                {
                    block.applyGain (static_cast<float> (pass) * 0.1f);

                    for (auto tap : { 0, 1 })
                        history.push (tap, 2, block.getArrayOfReadPointers(), 0, block.getNumSamples());
                });
    }

    WaveformHistory history;
    luna::WaveformGraph graph { history };
};

/** Registers a row that makes a picture once per measurement, and draws it once per iteration. */
template <typename Make, typename Draw>
void addFrameRow (const char* name, Make make, Draw draw)
{
    benchmark::RegisterBenchmark (name,
                                  [=] (benchmark::State& state)
                                  {
                                      const auto picture = make();

                                      for (auto _ : state)
                                      {
                                          draw (*picture);
                                          benchmark::ClobberMemory();
                                      }

                                      using benchmark::Counter;
                                      state.counters[msPerFrame] = Counter (
                                          1.0e-3, Counter::kIsIterationInvariantRate | Counter::kInvert);
                                  });
}

template <typename Subject, typename... Arguments>
void addGraphRow (const char* name, Arguments... arguments)
{
    addFrameRow (
        name, [=] { return std::make_unique<Subject> (arguments...); },
        [] (Subject& subject)
        {
            subject.graph.timerCallback();
            subject.draw (subject.graph);
        });
}
} // namespace

void addGraphRows()
{
    using luna::SpectrumAnalyser;
    using ViewMode = luna::SaturatorGraph::ViewMode;
    const auto makeMeters = [] { return std::make_unique<Meters>(); };

    addFrameRow ("frame/meter", makeMeters, [] (Meters& meters) { meters.drawOne(); });
    addFrameRow ("frame/meters", makeMeters, [] (Meters& meters) { meters.drawAll(); });
    addGraphRow<Saturator> ("frame/curve/decibels", ViewMode::decibels);
    addGraphRow<Saturator> ("frame/curve/amplitude", ViewMode::amplitude);
    addGraphRow<Spectrum> ("frame/spectrum/bands",
                           SpectrumAnalyser::spectrumLayer | SpectrumAnalyser::frequencyLabelLayer);
    addGraphRow<Spectrum> ("frame/spectrum/all",
                           SpectrumAnalyser::backgroundLayer | SpectrumAnalyser::gridLayer
                               | SpectrumAnalyser::frequencyLabelLayer | SpectrumAnalyser::decibelLabelLayer
                               | SpectrumAnalyser::spectrumLayer | SpectrumAnalyser::heldLayer);
    addGraphRow<Waveform> ("frame/waveform");
}

} // namespace bench
