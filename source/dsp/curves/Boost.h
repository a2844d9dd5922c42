#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"

#include <cmath>

namespace luna
{

/** A power curve that bends the level up towards the threshold and meets it with zero slope. */
class Boost final : public CurveSaturator<Boost>
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
    }

    [[nodiscard]] float shape (float x) const noexcept
    {
        if (x > threshold)
            return threshold;

        if (x < -threshold)
            return -threshold;

        const auto magnitude = std::abs ((1.0f / threshold) * x);
        const auto y = threshold * (magnitude - std::pow (magnitude, exponent) / exponent) * normaliser;
        return x < 0.0f ? -y : y;
    }

    /** Linear. */
    float threshold = 1.0f;
    float exponent = 50.0f;

    /** Right once a parameter has been set. */
    float normaliser = 1.0f;
};

} // namespace luna
