#pragma once

#include "dsp/LoudnessGates.h"
#include "dsp/SecondOrderIIRFilter.h"
#include "dsp/simd/KernelTable.h"

#include <vector>

namespace kf
{

/** What a meter shows, in LUFS, `range` in LU. Written on the audio thread, read by an editor without a lock.
    */
struct LUFSData
{
    float shortTerm = noLoudness;
    float shortTermMax = noLoudness;
    float momentary = noLoudness;
    float momentaryMax = noLoudness;
    float integrated = noLoudness;
    float rangeStart = noLoudness;
    float rangeEnd = noLoudness;
    float range = 0.0f;

    /** More than a minute of measurement. */
    bool isLongEnough = false;
};

/** Short-term, momentary and integrated loudness, and loudness range, of a stream of blocks.

    After ITU-R BS.1770 (K-weighting, windows of 400 ms and 3 s), EBU R 128 (gates at -70 LUFS and -10 LU) and
    EBU Tech 3342 (range between the 10th and 95th percentile, gate at -20 LU), with these differences, which
    are part of the product: windows are read while they still fill, with the divisor of the full window; sums
    over channels run inside the channel loop; histograms hold all blocks above -100 LUFS in steps of 0.1 LU,
    and the gates say where reading starts; the first 3 s of signal do not enter the range; the range holds
    still through silence.

    `processBlock` runs on the audio thread and `reset` on any; each takes `lock`. Neither allocates, as long
    as the host keeps to the prepared channels and block size.
*/
class LUFSMeter
{
public:
    LUFSMeter();

    /** `expectedRequestRate`: how often per second the values are read, in Hz; rounded up to a multiple of
        ten. */
    void prepareToPlay (double sampleRate, int numberOfChannels, int estimatedSamplesPerBlock,
                        int expectedRequestRate);

    void processBlock (const juce::AudioBuffer<float>& buffer);

    /** Restarts the measurement. The position within the present bin and the filters' state stay. */
    void reset();

    /** The values as of the last finished bin. Any thread. */
    [[nodiscard]] LUFSData getData() const noexcept;

    juce::AudioBuffer<float> bufferForMeasurement;
    SecondOrderIIRFilter preFilter;
    SecondOrderIIRFilter revisedLowFrequencyBCurveFilter;

    int numberOfBins = 0;
    int numberOfSamplesPerBin = 0;
    int numberOfSamplesIn3s = 0;
    int numberOfBinsIn400ms = 0;
    int numberOfSamplesIn400ms = 0;
    int numberOfBinsIn100ms = 0;

    int binsSince100ms = 1;
    int blocksMeasured = 0;
    int currentBin = 0;
    int samplesInCurrentBin = 0;

    /** One ring per channel: sums of squared weighted samples. */
    std::vector<std::vector<double>> bins;

    std::vector<double> shortTermMeanSquare;
    std::vector<double> momentaryMeanSquare;
    std::vector<double> channelWeighting;

    int gatedBlockCount = 0;
    double gatedBlockSum = 0.0;
    double relativeGate = -70.0;
    LoudnessHistogram blockHistogram;
    float integratedLoudness = noLoudness;

    float shortTermLoudness = noLoudness;
    float maxShortTermLoudness = noLoudness;
    float momentaryLoudness = noLoudness;
    float maxMomentaryLoudness = noLoudness;

    int rangeBlockCount = 0;
    double rangeBlockSum = 0.0;
    double rangeRelativeGate = -70.0;
    LoudnessHistogram rangeHistogram;
    float loudnessRangeStart = noLoudness;
    float loudnessRangeEnd = noLoudness;

    bool freezeLoudnessRangeOnSilence = true;
    bool currentBlockIsSilent = false;
    juce::CriticalSection lock;
    int nonSilentBlocks = 0;

private:
    void setMeasuringRate (double sampleRate, int rate);
    void sizeWindows (int numberOfChannels);

    bool statesAreHarmless() const noexcept;

    size_t numWeighed (const juce::AudioBuffer<float>& buffer) const noexcept
    {
        return juce::jmin (bins.size(), preFilter.z1.size(), static_cast<size_t> (buffer.getNumChannels()));
    }

    void weighIntoCurrentBin (const juce::AudioBuffer<float>& buffer, int start, int length) noexcept;
    void weighAndSquare (const juce::AudioBuffer<float>& buffer);
    bool weigh (const juce::AudioBuffer<float>& buffer, size_t channel, size_t count, int start, int length,
                simd::Channels squares, double* sums) noexcept;
    void addToCurrentBin (int startSample, int numSamples) noexcept;
    void finishBin (int numberOfChannels) noexcept;
    void updateWindows (size_t channel) noexcept;
    void measureIntegratedLoudness() noexcept;
    void measureLoudnessRange() noexcept;
    double weightedSum (const std::vector<double>& meanSquares) const noexcept;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LUFSMeter)
};

} // namespace kf
