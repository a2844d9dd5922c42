#include "Exhibits.h"
#include "widgets/InputOutputMeters.h"
#include "widgets/SaturatorGraph.h"
#include "widgets/SpectrumAnalyser.h"
#include "widgets/WaveformGraph.h"

namespace
{
using Make = std::function<std::unique_ptr<juce::Component>()>;
using luna::SaturatorGraph;

/** One of a clipper's curves with a level on it. */
struct CurveExhibit : public juce::Component
{
    CurveExhibit (int mode, SaturatorGraph::ViewMode view, float level, float threshold = -6.0f,
                  float shape = 0.5f)
    {
        clipper.setMode (mode);
        clipper.setParameter (threshold, 0);
        clipper.setParameter (shape, 1);
        clipper.current->envelope = level;

        graph.saturator = clipper.current;
        graph.setViewMode (view);
        addAndMakeVisible (graph);
    }

    void resized() override { graph.setBounds (getLocalBounds()); }

    MultiModeClipper clipper;
    SaturatorGraph graph;
};

Sheet makeCurveSheet()
{
    Sheet sheet { "SaturatorGraph", {} };
    const auto disable = [] (OffscreenWindow&, juce::Component& widget) { widget.setEnabled (false); };

    const auto makeCurve = [] (int mode, SaturatorGraph::ViewMode view, float level) -> Make
    { return [=] { return std::make_unique<CurveExhibit> (mode, view, level); }; };

    for (const auto& mode : MultiModeClipper().modes)
    {
        sheet.exhibits.push_back ({ mode.name + ", dB",
                                    240,
                                    240,
                                    makeCurve (mode.id, SaturatorGraph::ViewMode::decibels, 0.4f),
                                    {} });
        sheet.exhibits.push_back ({ mode.name + ", amplitude",
                                    240,
                                    240,
                                    makeCurve (mode.id, SaturatorGraph::ViewMode::amplitude, 0.7f),
                                    {} });
    }

    sheet.exhibits.push_back (
        { "compact", 99, 99, makeCurve (1, SaturatorGraph::ViewMode::decibels, 0.4f), {} });
    sheet.exhibits.push_back (
        { "disabled", 240, 240, makeCurve (1, SaturatorGraph::ViewMode::decibels, 0.4f), disable });
    sheet.exhibits.push_back (
        { "no curve", 240, 240, [] { return std::make_unique<SaturatorGraph>(); }, {} });
    return sheet;
}

/** One mode at several settings, without a level. */
Sheet makeModeSheet (const ClipperMode& mode, bool hasShape)
{
    using View = SaturatorGraph::ViewMode;
    Sheet sheet { "Curve " + mode.name, {} };

    const auto add = [&] (const juce::String& caption, View view, float threshold, float shape)
    {
        sheet.exhibits.push_back (
            { caption,
              240,
              240,
              [=, id = mode.id] { return std::make_unique<CurveExhibit> (id, view, 0.0f, threshold, shape); },
              {} });
    };

    for (const auto step : { 0, 1, 2 })
    {
        const auto shape = 0.5f * static_cast<float> (step);
        const auto threshold = -6.0f * static_cast<float> (step) - 3.0f;

        if (hasShape)
            add (mode.shapeLabel + " " + juce::String (50 * step) + "%", View::decibels, -6.0f, shape);
        else
            add ("Threshold " + juce::String (threshold, 0) + " dB", View::decibels, threshold, 0.0f);
    }

    add (hasShape ? mode.shapeLabel + " 100%" : "Threshold -6 dB", View::amplitude, -6.0f, 1.0f);
    return sheet;
}

/** Half a history of decaying hits, or the spectrum of two sines, through the product's own classes. */
struct MeasuredSignal
{
    explicit MeasuredSignal (OrvoAudioProcessor& owner) : processor (owner)
    {
        processor.setPlayConfigDetails (2, 2, sampleRate, blockSize);
        processor.parameters.getParameter ("layout")->setValueNotifyingHost (1.0f / 3.0f);
        processor.parameters.getParameter ("threshold_post")->setValueNotifyingHost (0.7f);
        processor.prepareToPlay (sampleRate, blockSize);
    }

    /** `seconds` of signal through the processor. */
    void run (double seconds)
    {
        juce::AudioBuffer<float> buffer (2, blockSize);
        juce::MidiBuffer midi;

        for (auto start = 0; start < static_cast<int> (seconds * sampleRate); start += blockSize)
        {
            for (auto i = 0; i < blockSize; ++i)
            {
                const auto t = (start + i) / sampleRate;
                const auto envelope = 1.2 * std::exp (-8.0 * std::fmod (t, 0.5)) + 0.05;
                const auto x = envelope
                               * (0.7 * std::sin (juce::MathConstants<double>::twoPi * 110.0 * t)
                                  + 0.3 * std::sin (juce::MathConstants<double>::twoPi * 2500.0 * t));
                buffer.setSample (0, i, static_cast<float> (x));
                buffer.setSample (1, i, static_cast<float> (0.5 * x));
            }

            processor.processBlock (buffer, midi);
        }
    }

    static constexpr auto sampleRate = 48000.0;
    static constexpr auto blockSize = 512;

    OrvoAudioProcessor& processor;
};
} // namespace

std::vector<Sheet> makeGraphSheets (OrvoAudioProcessor& processor)
{
    const auto disable = [] (OffscreenWindow&, juce::Component& widget) { widget.setEnabled (false); };

    const auto makeWaveform = [&processor]
    { return std::make_unique<luna::WaveformGraph> (processor.waveformTaps); };
    const auto makeSpectrum = [&processor]
    { return std::make_unique<luna::SpectrumAnalyser> (processor.spectrum); };
    const auto makeMeters = [&processor]
    { return std::make_unique<luna::temp::InputOutputMeters> (&processor.levels); };

    // The history starts to run when a graph has sized it.
    const auto runSignal = [&processor] (OffscreenWindow&, juce::Component&)
    { MeasuredSignal (processor).run (3.1); };

    const auto readMeters = [runSignal] (OffscreenWindow& window, juce::Component& widget)
    {
        runSignal (window, widget);

        auto& meters = dynamic_cast<luna::temp::InputOutputMeters&> (widget);

        for (auto* pair : { &meters.inputMeters, &meters.outputMeters })
        {
            for (auto* meter : { &pair->leftMeter, &pair->rightMeter })
                meter->timerCallback();

            for (auto* value :
                 { &pair->leftPeakValue, &pair->rightPeakValue, &pair->leftRmsValue, &pair->rightRmsValue })
                value->timerCallback();
        }
    };

    std::vector<Sheet> sheets { makeCurveSheet(),
                                { "WaveformGraph",
                                  { { "three seconds in", 700, 160, makeWaveform, runSignal },
                                    { "disabled", 300, 160, makeWaveform, disable } } },
                                { "SpectrumAnalyser",
                                  { { "two sines", 600, 240, makeSpectrum, runSignal },
                                    { "narrow", 390, 240, makeSpectrum, {} },
                                    { "disabled", 390, 240, makeSpectrum, disable } } },
                                { "InputOutputMeters",
                                  { { "hits", 260, 400, makeMeters, readMeters },
                                    { "disabled", 260, 400, makeMeters, disable } } } };

    const MultiModeClipper clipper;

    for (const auto& mode : clipper.modes)
        sheets.push_back (
            makeModeSheet (mode, mode.saturator != &clipper.hardClipper && mode.saturator != &clipper.dough));

    return sheets;
}
