#pragma once

#include "MagnitudeTransform.h"

#include <juce_dsp/juce_dsp.h>

#include <memory>

/** Peak-holding magnitude spectrum of a mono stream, in frames of 2048 samples that do not overlap.

    The audio thread pushes samples with `lock` held, the transform included; the message thread takes `lock`
    for a copy of `magnitudes` and `sampleRate`. After `prepare` nothing allocates.
*/
class SpectrumData
{
public:
    SpectrumData();

    void prepare (double newSampleRate);

    /** With `lock` held by the caller. Audio thread. */
    void pushSample (float x) noexcept;

    /** Defines the transform, which `transform` carries out; see docs/decisions/2026-11-22-kept-by-name.md. */
    std::unique_ptr<juce::dsp::FFT> fft;
    int fftSize = 0;

    /** Hann, scaled to a mean of 1. */
    juce::Array<float> window;

    /** The last frame's magnitudes stand in its first half. */
    juce::Array<float> fftData;

    juce::Array<float> samples;

    /** Linear; a full-scale sine reads about 1 in its bin. The upper half mirrors the lower one. */
    juce::Array<float> magnitudes;

    int writeIndex = 0;

    /** Per frame, with a time constant of 0.2 s. */
    float decay = 0.0f;
    float windowSum = 0.0f;
    double sampleRate = 44100.0;
    juce::CriticalSection lock;

private:
    void runFrame() noexcept;

    MagnitudeTransform transform;
};
