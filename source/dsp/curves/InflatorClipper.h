#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"

#include <cmath>

namespace luna
{

/** A polynomial that lifts the level below the threshold, and a parabola that falls away above it. Beyond the
    parabola's end the sample is silenced: that is the shape's design. */
class InflatorClipper final : public CurveSaturator<InflatorClipper>
{
public:
    /** 0: threshold in dB; 1: curve, 0 to 1. */
    void setParameter (float value, int index) override
    {
        if (index == 0)
        {
            threshold = decibels::toGain (value);
        }
        else if (index == 1)
        {
            curve = value;
            updateCoefficients();
        }
    }

    void updateCoefficients() override
    {
        const auto p = curve * 100.0f - 50.0f;
        curveA = (p + 50.0f) / 100.0f + 1.0f;
        curveB = -(p / 50.0f);
        curveC = (p - 50.0f) / 100.0f;
        curveD = (0.0625f - p / 400.0f) + (p * p) / 40000.0f;
    }

    [[nodiscard]] float shape (float x) const noexcept
    {
        const auto y = threshold * relativeOutput (std::abs (x) / threshold);
        return x < 0.0f ? -y : y;
    }

    float curveA = 0.0f;
    float curveB = 0.0f;
    float curveC = 0.0f;
    float curveD = 0.0f;

    /** Linear. */
    float threshold = 1.0f;
    float curve = 0.0f;

private:
    /** Both sides are relative to the threshold. */
    float relativeOutput (float a) const noexcept
    {
        const auto limit = curve * 0.5f + 2.0f;

        if (a > limit)
            return 0.0f;

        if (a > 1.0f)
        {
            const auto u = (a - 1.0f) / (limit - 1.0f) + 1.0f;
            return 2.0f * u - u * u;
        }

        const auto a2 = a * a;
        const auto a3 = a2 * a;
        const auto a4 = a2 * a2;
        return curveA * a + curveB * a2 + curveC * a3 - (a2 - 2.0f * a3 + a4) * curveD;
    }
};

} // namespace luna
