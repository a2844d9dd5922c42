#include "core/OrvoAudioProcessor.h"
#include "settings/TessarinLookAndFeel.h"
#include "widgets/InputOutputMeters.h"
#include "widgets/ParameterChoiceButtons.h"
#include "widgets/ParameterLabelSlider.h"
#include "widgets/SaturatorGraph.h"
#include "widgets/SpectrumAnalyser.h"
#include "widgets/TooltipPanel.h"
#include "widgets/WaveformGraph.h"

#include <gtest/gtest.h>

#include <thread>

namespace juce::detail
{
bool dispatchNextMessageOnSystemQueue (bool returnIfNoPendingMessages);
}

namespace
{
/** A window on the screen with everything that moves, polls or listens. */
struct BusyWindow : public juce::Component
{
    explicit BusyWindow (OrvoAudioProcessor& processor)
        : waveform (processor.waveformTaps),
          spectrum (processor.spectrum),
          meters (&processor.levels),
          layout ("layout", processor.parameters, { "A", "B", "C", "D" }),
          knob ("Gain", "gain_single", processor.parameters)
    {
        curve.saturator = processor.singleClipper.current;

        for (auto* child : std::initializer_list<juce::Component*> { &waveform, &spectrum, &meters, &curve,
                                                                     &layout, &knob, &strip })
        {
            addAndMakeVisible (*child);
            child->setBounds (100 * getNumChildComponents() - 100, 0, 100, 200);
        }

        setOpaque (true);
        setSize (700, 200);
        addToDesktop (juce::ComponentPeer::windowHasTitleBar);
        setVisible (true);
    }

    void paint (juce::Graphics& g) override
    {
        g.fillAll (juce::Colours::black);
        ++numFrames;
    }

    int numFrames = 0;
    luna::WaveformGraph waveform;
    luna::SpectrumAnalyser spectrum;
    luna::temp::InputOutputMeters meters;
    luna::SaturatorGraph curve;
    luna::ParameterChoiceButtons layout;
    tessarin::ParameterLabelSlider knob;
    luna::TooltipPanel strip;
};
} // namespace

TEST (RealWindow, ClosesAtAnyMomentWhileAudioAndAutomationGoOn)
{
    tessarin::DLAF shared;
    OrvoAudioProcessor processor;
    processor.setPlayConfigDetails (2, 2, 48000.0, 256);
    processor.prepareToPlay (48000.0, 256);

    std::atomic<bool> isRunning { true };
    std::thread audio (
        [&]
        {
        juce::AudioBuffer<float> block (2, 256);
        juce::MidiBuffer midi;

        for (auto i = 0; isRunning; ++i)
        {
            block.clear();
            block.setSample (0, 0, 1.0f);
            processor.parameters.getParameter ("layout")->setValueNotifyingHost (static_cast<float> (i % 4)
                                                                                 / 3.0f);
            processor.processBlock (block, midi);
            std::this_thread::yield();
        }
    });

    // Messages that are pending when a window goes must find nobody.
    for (auto frames = 0; frames < 8; ++frames)
    {
        BusyWindow window (processor);
        ASSERT_NE (window.getPeer(), nullptr);

        while (window.numFrames < frames)
            juce::detail::dispatchNextMessageOnSystemQueue (false);
    }

    isRunning = false;
    audio.join();

    while (juce::detail::dispatchNextMessageOnSystemQueue (true))
    {
    }
}
