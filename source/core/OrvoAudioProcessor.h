#pragma once

#include "core/OrvoParameters.h"
#include "core/TessarinProcessor.h"
#include "dsp/ChainMeasurements.h"
#include "dsp/JuceOversamplers.h"
#include "dsp/SignalChain.h"

/** One row of the section table: the name shown to the host, the end of the section's parameter IDs, and the clipper,
    which the processor owns. */
struct Section
{
    juce::String displayName;
    juce::String id;
    MultiModeClipper* clipper = nullptr;
};

/** The product: parameters, nine clipper sections and meters by value, and the locks and the life cycle around the
    signal chain, which drives them.

    One block: measure the input, run the chain, measure the output.

    `processLock` is held for the whole of a block and of a parameter change; the members that an editor reads
    without it are the published floats, `inputLoudness`, `outputLoudness` and the level records. See
    docs/threading.md.
*/
class OrvoAudioProcessor final : public tessarin::TessarinProcessor
{
public:
    OrvoAudioProcessor();
    ~OrvoAudioProcessor() override;

    /** `newSampleRate` in Hz, at the host's rate. May come again at any time; not during a block. */
    void prepareToPlay (double newSampleRate, int maximumExpectedSamplesPerBlock) override;

    void processAudio (juce::AudioBuffer<float>& buffer) override;

    /** On the thread that set the parameter, the audio thread included. */
    void parameterChanged (const juce::String& parameterID, float newValue) override;

    juce::AudioProcessorEditor* createEditor() override;

    /** Starts maximum peaks and loudness anew, and publishes that at once, since no block may come. Any thread. */
    void resetMeasurements();

    MultiModeClipper lowBandClipper, midBandClipper, highBandClipper;
    MultiModeClipper midChannelClipper, sideChannelClipper;
    MultiModeClipper leftChannelClipper, rightChannelClipper;
    MultiModeClipper singleClipper;
    MultiModeClipper postClipper;

    /** Tap 0 is the input, tap 1 the output. */
    WaveformHistory waveformTaps;
    SpectrumData spectrum;
    luna::temp::InputOutputLevelProcessor levels;

    kf::LUFSData inputLoudness, outputLoudness;
    kf::LUFSMeter inputLoudnessMeter, outputLoudnessMeter;

    /** Output minus input, in LU and dB. */
    float shortTermDifference = 0.0f;
    float peakDifference = 0.0f;

    /** Since the last change of a parameter, in dB of full scale. */
    float inputMaxPeakDb = 0.0f;
    float outputMaxPeakDb = 0.0f;

    /** Last size of the editor, in pixels at scale 1. */
    int editorWidth = 0;
    int editorHeight = 0;

    juce::Array<Section> sections;

    ThreeBandSplitter splitter;
    juce::AudioBuffer<float> midBuffer, sideBuffer;
    juce::dsp::AudioBlock<float> midBlock, sideBlock;
    int layout = Layout::singleBand;

    juce::CriticalSection processLock;

    /** They define taps and latency; the audio runs through kernels that yield the same, bit for bit. */
    JuceOversamplers oversamplers;
    int oversamplingIndex = 2;

    /** Rate last given to the oversamplers; 0 until the first `prepareToPlay`, before which no block is
        processed. */
    double oversamplingSampleRate = 0.0;
    juce::CriticalSection oversamplerLock;

    /** The output clipper. Only its threshold is ever set. */
    luna::HardClipper ceiling;

    double sampleRate = 44100.0;
    int blockSize = 512;

    /** The chain has to be prepared before the next block, for another oversampling factor. */
    std::atomic<bool> needsPrepare { false };

private:
    SignalChain::Parts getChainParts();
    ChainMeasurements::Parts getMeasuredParts();
    void buildSectionTable();
    int getNumInputChannels() const;
    void prepareChain();
    void processLocked (juce::AudioBuffer<float>& buffer);
    void processPart (juce::AudioBuffer<float>& buffer);

    SignalChain chain { getChainParts() };
    ChainMeasurements measurements { getMeasuredParts() };
    const OrvoParameters values;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (OrvoAudioProcessor)
};
