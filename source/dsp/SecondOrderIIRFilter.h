#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

#include <vector>

namespace kf
{

/** A double precision biquad whose coefficients are published for 48 kHz and follow from an analogue
    prototype at any other rate. Direct form II, one state per channel.

    Prototype, with K = tan (arctanK * 48000 / rate): H(s) = (VH s^2 + VB s / Q + VL) / (s^2 + s / Q + 1)
    under the bilinear transform s = (1 - z^-1) / (K (1 + z^-1)).
*/
class SecondOrderIIRFilter
{
public:
    struct Coefficients
    {
        double b0, b1, b2, a1, a2;
    };

    struct Prototype
    {
        double Q, VH, VB, VL, arctanK;
    };

    /** Outputs no larger than this become zero. */
    static constexpr auto quietest = 1.0e-8;

    SecondOrderIIRFilter (const Coefficients& at48k, const Prototype& prototype);
    virtual ~SecondOrderIIRFilter() = default;

    /** Allocates; the only call that clears the state. At exactly 48 kHz the published coefficients are used.
        */
    virtual void prepareToPlay (double sampleRate, int numberOfChannels);

    virtual void reset() {}

    /** In place, the first `numberOfChannels` channels; outputs within `quietest` of zero become zero. The meter's
        kernel runs in its place; see docs/decisions/2026-11-22-kept-by-name.md. */
    void processBlock (juce::AudioBuffer<float>& buffer) noexcept;

    /** For a state that met samples which are no numbers. */
    void clearState() noexcept;

    double b0_48k, b1_48k, b2_48k, a1_48k, a2_48k;
    double b0 = 0.0, b1 = 0.0, b2 = 0.0, a1 = 0.0, a2 = 0.0;
    double Q, VH, VB, VL, arctanK;
    int numberOfChannels = 0;
    std::vector<double> z1, z2;
};

} // namespace kf
