#pragma once

#include "core/Sections.h"
#include "core/TessarinProcessor.h"
#include "dsp/HalfBandOversampler.h"
#include "dsp/LevelProcessors.h"
#include "dsp/LUFSMeter.h"
#include "dsp/OversamplerBank.h"
#include "dsp/SpectrumData.h"
#include "dsp/ThreeBandSplitter.h"
#include "dsp/WaveformHistory.h"

#include <unordered_map>

/** The product: 70 parameters, nine clipper sections, and the signal chain that drives them.

    One block: measure the input, apply the input gain, oversample, run the sections of the layout and then
    "post", downsample, clamp at the ceiling, measure the output.

    `processLock` is held for the whole of a block and of a parameter change; the members that an editor reads
    without it are the published floats, `inputLoudness`, `outputLoudness` and the level records. See
    docs/threading.md.
*/
class OrvoAudioProcessor final : public tessarin::TessarinProcessor
{
public:
    enum Layout
    {
        singleBand = 0,
        multiBand = 1,
        midSide = 2,
        leftRight = 3
    };

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
    int layout = singleBand;

    juce::CriticalSection processLock;

    /** They define taps and latency; the audio runs through kernels that yield the same, bit for bit. */
    OversamplerBank oversamplers;
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
    using Context = juce::dsp::ProcessContextReplacing<float>;

    void buildSectionTable();
    void addParameters();
    void addSectionParameters (const Section&);
    void lookUpParameters();

    int getNumInputChannels() const;
    void reserveForLargestFactor (int numChannels);
    void prepareChain();

    void applyLevels (int section);
    void applyChange (ParameterAddress, float newValue);
    void applyCrossovers();
    void updateCeiling();

    void processLocked (juce::AudioBuffer<float>& buffer);
    void processPart (juce::AudioBuffer<float>& buffer);
    void measureInput (const juce::AudioBuffer<float>& buffer, const juce::dsp::AudioBlock<float>& block);
    void measureOutput (const juce::AudioBuffer<float>& buffer, const juce::dsp::AudioBlock<float>& block);
    void feedSpectrum (const juce::dsp::AudioBlock<float>& block);
    void applyInputGain (juce::dsp::AudioBlock<float>& block) const;
    void clip (juce::dsp::AudioBlock<float>& block);
    bool clipPart (HalfBandOversampler&, juce::dsp::AudioBlock<float>& part);
    void runLayout (juce::dsp::AudioBlock<float>& block);
    void runMultiBand (juce::dsp::AudioBlock<float>& block);
    void runMidSide (juce::dsp::AudioBlock<float>& block);
    void runLeftRight (juce::dsp::AudioBlock<float>& block);
    void publish();

    std::array<SectionValues, numSections> sectionValues;
    GlobalValues globalValues;
    std::unordered_map<juce::String, ParameterAddress> addresses;

    /** Samples at the oversampled rate in one part of a block: with the crossover's bands about 24 KB, and with the
        filters' lines still less than a first-level cache. */
    static constexpr size_t oversampledPartLength = 512;
    static_assert (oversampledPartLength >> 1 <= HalfBandOversampler::longestPart);

    /** One for each entry of `oversamplers`. */
    std::vector<HalfBandOversampler> partOversamplers;
    juce::AudioBuffer<float> oversampledPart;

    /** The bands that reach the sum, with room for all three. */
    juce::Array<int> bandsToMerge;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (OrvoAudioProcessor)
};
