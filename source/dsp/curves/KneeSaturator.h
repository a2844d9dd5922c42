#pragma once

#include "dsp/Saturator.h"

namespace luna
{

/** Base of the curves that work on the level in dB and bend it in a knee of `kneeDb` to either side of the
    threshold. */
template <typename Base>
class KneeSaturator : public Base
{
public:
    /** 0: threshold in dB; 1: half the knee's width in dB. */
    void setParameter (float value, int index) final
    {
        if (index == 0)
            thresholdDb = value;
        else if (index == 1)
            kneeDb = value;

        this->updateCoefficients();
    }

    void updateCoefficients() override
    {
        kneeStartDb = thresholdDb - kneeDb;
        kneeEndDb = thresholdDb + kneeDb;
    }

    float thresholdDb = 0.0f;
    float kneeDb = 0.0f;
    float kneeStartDb = 0.0f;
    float kneeEndDb = 0.0f;
};

} // namespace luna
