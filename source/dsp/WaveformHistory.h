#pragma once

#include <juce_core/juce_core.h>

#include <atomic>

/** One trace of the level history: a ring of peak levels in dB, one per pixel column of the graph. */
struct WaveformTap
{
    enum Style
    {
        filledBars = 0,
        line = 1
    };

    void prepare (double newSampleRate);
    void clear() noexcept;
    void pushMagnitude (float magnitude) noexcept;

    int colourId = 0;
    int style = filledBars;

    juce::Array<float> values;
    int writeIndex = 0;
    int samplesPerPoint = 0;
    int samplesInPoint = 0;
    float pointMaximum = 0.0f;

    float smoothed = 0.0f;

    /** Decay per point: 40 dB in `releaseMs`. */
    float smoothingCoefficient = 0.0f;
    float releaseMs = 0.0f;
    bool smoothingEnabled = false;

    double sampleRate = 44100.0;
    float seconds = 5.0f;

    /** 0 until a graph has sized the tap, which does nothing before. */
    int points = 0;
};

/** The last five seconds of several signals as level traces, for the scrolling waveform.

    The audio thread pushes, the message thread sizes and reads; both hold `lock`, the reader for no longer
    than an array copy takes.
*/
class WaveformHistory
{
public:
    /** Before audio runs. `releaseMs` 0 shows raw peaks. */
    void addTap (float releaseMs, int colourId, int style);

    void prepare (double sampleRate);

    /** Sizes every tap to the graph's width in pixels; a change empties it. Message thread. */
    void setPoints (int points);

    void clear();

    /** Audio thread: the magnitudes of the first two channels. */
    void push (int tap, int numChannels, const float* const* channels, int startSample, int numSamples);

    /** Another number whenever something may have changed. Any thread. */
    [[nodiscard]] juce::uint32 getChangeCount() const noexcept
    {
        return changeCount.load (std::memory_order_relaxed);
    }

    juce::Array<WaveformTap> taps;
    juce::CriticalSection lock;

private:
    std::atomic<juce::uint32> changeCount { 0 };
};
