#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"
#include "dsp/simd/KernelTable.h"

namespace luna
{

/** A polynomial that lifts the level below the threshold, and a parabola that falls away above it. Beyond the
    parabola's end the sample is silenced: that is the shape's design. */
class InflatorClipper final : public KernelSaturator<InflatorClipper>
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

    void run (float* samples, size_t numSamples) const noexcept
    {
        const auto limit = curve * 0.5f + 2.0f;

        simd::kernels().lift ({ threshold,
                                limit,
                                1.0f / (limit - 1.0f),
                                { curveA, curveB - curveD, curveC + 2.0f * curveD, -curveD } },
                              samples, numSamples);
    }

    float curveA = 0.0f;
    float curveB = 0.0f;
    float curveC = 0.0f;
    float curveD = 0.0f;

    /** Linear. */
    float threshold = 1.0f;
    float curve = 0.0f;
};

} // namespace luna
