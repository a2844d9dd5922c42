#pragma once

#include <juce_core/juce_core.h>

/** What a level meter shows of one channel; linear, 1 is full scale. */
struct LevelData
{
    double peak = 0.0;
    double rms = 0.0;
    double heldPeak = 0.0;
    double maxPeak = 0.0;
    double maxRms = 0.0;

    bool operator== (const LevelData&) const = default;
};

/** Tracks peak, held peak and RMS of one channel, and the maxima since the last reset.

    The audio thread writes; widgets read through `getData` on the message thread, which also writes a few of
    the same fields, without a lock: a torn reading disturbs one frame.
*/
struct LevelChannel
{
    /** Allocates the RMS window and clears everything. */
    void prepare (double newSampleRate);

    /** Audio thread; `x` is a magnitude. Only after `prepare`. */
    void processSample (float x) noexcept;

    /** The parts of `processSample`, of which StereoLevelProcessor runs some as kernels: the held peak, sample
        by sample or for several with the largest of their magnitudes; and what follows a change of `rmsSum`.
        For `samplesUntilBreak` samples the window does not wrap and its sum is not rebuilt. */
    void hold (float x) noexcept;
    void holdAll (const float* samples, int numSamples, float largest) noexcept;
    void advance (int numSamples) noexcept;
    [[nodiscard]] int samplesUntilBreak() const noexcept;

    /** To be called after a block: drops any state that is no finite number, which would otherwise never
        leave. */
    void discardNonFiniteState() noexcept;

    /** The five values, with everything below -80 dB as 0; also cleans the record itself. */
    LevelData getData() noexcept;

    void resetMaxima() noexcept;

    double peak = 0.0;
    double rms = 0.0;
    double heldPeak = 0.0;
    double maxPeak = 0.0;
    double maxRms = 0.0;

    float peakLevel = 0.0f;
    float peakCoefficient = 0.0f;
    float peakReleaseMs = 5.0f;
    float peakSampleRate = 44100.0f;

    float heldLevel = 0.0f;
    float heldCoefficient = 0.0f;
    float heldReleaseMs = 5.0f;
    float heldSampleRate = 44100.0f;
    float holdSeconds = 1.0f;
    int holdSamples = 44100;
    int holdCounter = 0;
    float holdValue = 0.0f;

    float rmsSeconds = 0.3f;
    int rmsSamples = 0;

    /** Running sum of the squares in the window, rebuilt once a second to shed its rounding errors. */
    float rmsSum = 0.0f;
    int rmsIndex = 0;
    float rmsSumSnapshot = 0.0f;
    int rmsRecalculateInterval = 44100;
    int samplesSinceRecalculation = 0;
    float maxRmsSum = 0.0f;
    juce::Array<float> squares;
};
