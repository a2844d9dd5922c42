#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"
#include "dsp/simd/KernelTable.h"

#include <cmath>

namespace luna
{

/** A saturator whose input range is fixed at plus and minus full scale, where it meets the threshold with
    zero slope; its slope at the origin is 1. */
class Dough final : public KernelSaturator<Dough>
{
public:
    void setParameter (float value, int index) override
    {
        if (index != 0)
            return;

        threshold = decibels::toGain (value);
        const auto isLinear = juce::exactlyEqual (threshold, 1.0f) || juce::exactlyEqual (threshold, 0.0f);
        exponent = isLinear ? 1.0f : 1.0f / (1.0f - threshold);
        inverseExponent = 1.0f / exponent;

        // Up to here a^n / n is below 2^-27 a.
        negligible = isLinear ? 0.0f : std::pow (exponent * 0x1p-27f, 1.0f / (exponent - 1.0f));
    }

    void run (float* samples, size_t numSamples) const noexcept
    {
        const auto& kernels = simd::kernels();

        if (juce::exactlyEqual (exponent, 1.0f))
        {
            kernels.hardClip (threshold, samples, numSamples);
            return;
        }

        kernels.powerClip ({ 1.0f, threshold, 1.0f, exponent, inverseExponent, 1.0f, 1.0f, negligible },
                           samples, numSamples);
    }

    /** Linear. */
    float threshold = 1.0f;
    float exponent = 1.0f;
    float inverseExponent = 1.0f;

private:
    float negligible = 0.0f;
};

} // namespace luna
