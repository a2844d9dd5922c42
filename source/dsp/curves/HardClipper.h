#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"

namespace luna
{

/** A clamp at the threshold. Also the output ceiling of the whole chain. */
class HardClipper final : public CurveSaturator<HardClipper>
{
public:
    void setParameter (float value, int index) override
    {
        if (index == 0)
            threshold = decibels::toGain (value);
    }

    [[nodiscard]] float shape (float x) const noexcept
    {
        const auto below = threshold < x ? threshold : x;
        return -threshold > below ? -threshold : below;
    }

    /** Linear. */
    float threshold = 0.0f;
};

} // namespace luna
