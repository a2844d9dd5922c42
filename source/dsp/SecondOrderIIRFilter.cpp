#include "SecondOrderIIRFilter.h"

#include <algorithm>
#include <cmath>

namespace kf
{

SecondOrderIIRFilter::SecondOrderIIRFilter (const Coefficients& at48k, const Prototype& prototype)
    : b0_48k (at48k.b0),
      b1_48k (at48k.b1),
      b2_48k (at48k.b2),
      a1_48k (at48k.a1),
      a2_48k (at48k.a2),
      Q (prototype.Q),
      VH (prototype.VH),
      VB (prototype.VB),
      VL (prototype.VL),
      arctanK (prototype.arctanK)
{
}

void SecondOrderIIRFilter::prepareToPlay (double sampleRate, int newNumberOfChannels)
{
    numberOfChannels = newNumberOfChannels;
    z1.assign (static_cast<size_t> (numberOfChannels), 0.0);
    z2.assign (static_cast<size_t> (numberOfChannels), 0.0);

    if (juce::exactlyEqual (sampleRate, 48000.0))
    {
        b0 = b0_48k;
        b1 = b1_48k;
        b2 = b2_48k;
        a1 = a1_48k;
        a2 = a2_48k;
        return;
    }

    const auto k = std::tan (arctanK * 48000.0 / sampleRate);
    const auto a = k / Q;
    const auto s = k * k;
    const auto m = VB * k / Q;
    const auto n = VL * k * k;
    const auto d = 1.0 / (a + 1.0 + s);

    b0 = (VH + m + n) * d;
    b1 = 2.0 * (n - VH) * d;
    b2 = (VH - m + n) * d;
    a1 = 2.0 * (s - 1.0) * d;
    a2 = (1.0 - a + s) * d;
}

void SecondOrderIIRFilter::processBlock (juce::AudioBuffer<float>& buffer) noexcept
{
    for (auto channel = 0; channel < juce::jmin (numberOfChannels, buffer.getNumChannels()); ++channel)
    {
        auto* samples = buffer.getWritePointer (channel);
        auto w1 = z1[static_cast<size_t> (channel)];
        auto w2 = z2[static_cast<size_t> (channel)];

        for (auto i = 0; i < buffer.getNumSamples(); ++i)
        {
            const auto w = static_cast<double> (samples[i]) - a1 * w1 - a2 * w2;
            const auto y = b0 * w + b1 * w1 + b2 * w2;
            samples[i] = std::abs (y) <= quietest ? 0.0f : static_cast<float> (y);
            w2 = w1;
            w1 = w;
        }

        z1[static_cast<size_t> (channel)] = w1;
        z2[static_cast<size_t> (channel)] = w2;
    }
}

void SecondOrderIIRFilter::clearState() noexcept
{
    std::fill (z1.begin(), z1.end(), 0.0);
    std::fill (z2.begin(), z2.end(), 0.0);
}

} // namespace kf
