#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"
#include "dsp/simd/KernelTable.h"

namespace luna
{

/** A clamp at the threshold. Also the output ceiling of the whole chain. */
class HardClipper final : public KernelSaturator<HardClipper>
{
public:
    void setParameter (float value, int index) override
    {
        if (index == 0)
            threshold = decibels::toGain (value);
    }

    void run (float* samples, size_t numSamples) const noexcept
    {
        simd::kernels().hardClip (threshold, samples, numSamples);
    }

    /** Linear. */
    float threshold = 0.0f;
};

} // namespace luna
