#pragma once

#include "common/Decibels.h"
#include "dsp/Saturator.h"

namespace luna
{

/** Base of the curves that scale the sample by drive over threshold, shape it, and scale it back. */
template <typename Curve>
class DrivenSaturator : public CurveSaturator<Curve>
{
public:
    /** 0: threshold in dB; 1: drive, 0 to 1. At or below -100 dB `inverseThreshold` is infinite. */
    void setParameter (float value, int index) final
    {
        if (index == 0)
            threshold = decibels::toGain (value);
        else if (index == 1)
            drive = 2.0f * value + 1.0f;

        updateCoefficients();
    }

    void updateCoefficients() final
    {
        inverseThreshold = threshold > 0.0f ? 1.0f / threshold : std::numeric_limits<float>::infinity();
    }

    /** Linear. */
    float threshold = 0.0f;
    float drive = 1.0f;
    float inverseThreshold = 1.0f;
};

} // namespace luna
