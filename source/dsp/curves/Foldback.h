#pragma once

#include "common/Decibels.h"
#include "dsp/curves/KneeSaturator.h"

#include <cmath>

namespace luna
{

/** Reflects the level about the threshold in dB, with a quadratic Bezier curve through the knee. In no mode
    of the product; see docs/decisions/2026-11-22-kept-by-name.md. */
class Foldback final : public KneeSaturator<CurveSaturator<Foldback>>
{
public:
    /** Also below the knee the sample is rebuilt from its level, so it returns with a rounding difference. */
    [[nodiscard]] float shape (float x) const noexcept
    {
        const auto gain = decibels::toGain (outputLevelDb (decibels::fromGain (std::abs (x))));
        return x < 0.0f ? -gain : gain;
    }

private:
    float outputLevelDb (float levelDb) const noexcept
    {
        if (levelDb <= kneeStartDb)
            return levelDb;

        if (levelDb > kneeEndDb)
            return thresholdDb - (levelDb - thresholdDb);

        const auto t = (levelDb - kneeStartDb) / (kneeEndDb - kneeStartDb);
        const auto w = 1.0f - t;
        const auto reflectedEndDb = thresholdDb - (kneeEndDb - thresholdDb);
        return 2.0f * w * t * thresholdDb + w * w * kneeStartDb + reflectedEndDb * t * t;
    }
};

} // namespace luna
