#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"
#include "dsp/simd/KernelTable.h"

#include <cmath>

namespace luna
{

/** A power curve that bends the level up towards the threshold and meets it with zero slope. */
class Boost final : public KernelSaturator<Boost>
{
public:
    /** 0: threshold in dB; 1: amount, 0 to 1, which maps to exponents from 50 down to 3. */
    void setParameter (float value, int index) override
    {
        if (index == 0)
            threshold = decibels::toGain (value);
        else if (index == 1)
            exponent =
                juce::NormalisableRange<float> (3.0f, 50.0f, 0.0f, 0.35f).convertFrom0to1 (1.0f - value);

        normaliser = exponent / (exponent - 1.0f);

        // Up to here a^n / n is below 2^-27 a.
        negligible = std::pow (exponent * 0x1p-27f, 1.0f / (exponent - 1.0f));
    }

    void run (float* samples, size_t numSamples) const noexcept
    {
        simd::kernels().powerClip ({ threshold, threshold, 1.0f / threshold, exponent, 1.0f / exponent,
                                     threshold, normaliser, negligible },
                                   samples, numSamples);
    }

    /** Linear. */
    float threshold = 1.0f;
    float exponent = 50.0f;

    /** Right once a parameter has been set. */
    float normaliser = 1.0f;

private:
    float negligible = 0.0f;
};

} // namespace luna
