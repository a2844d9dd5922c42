#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"

#include <cmath>

namespace luna
{

/** A saturator whose input range is fixed at plus and minus full scale, where it meets the threshold with
    zero slope; its slope at the origin is 1. */
class Dough final : public CurveSaturator<Dough>
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
    }

    [[nodiscard]] float shape (float x) const noexcept
    {
        if (x >= 1.0f)
            return threshold;

        if (x <= -1.0f)
            return -threshold;

        if (juce::exactlyEqual (threshold, 1.0f))
            return x;

        const auto magnitude = std::abs (x);
        const auto y = std::abs (magnitude - std::pow (magnitude, exponent) * inverseExponent);
        return x < 0.0f ? -y : y;
    }

    /** Linear. */
    float threshold = 1.0f;
    float exponent = 1.0f;
    float inverseExponent = 1.0f;
};

} // namespace luna
