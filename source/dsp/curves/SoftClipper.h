#pragma once

#include "common/Decibels.h"
#include "dsp/curves/KneeSaturator.h"

#include <cmath>

namespace luna
{

/** A limiter of the instantaneous level with a quadratic knee: nothing changes below the knee, and above it
    the magnitude is pinned to the threshold. */
class SoftClipper final : public KneeSaturator<SoftClipper>
{
public:
    [[nodiscard]] float shape (float x) const noexcept
    {
        const auto levelDb = levelOf (x);

        // Most of a signal lies below the knee, where the gain is exactly 1.
        return levelDb <= kneeStartDb ? x : x * decibels::toGain (gainChangeDb (levelDb));
    }

private:
    /** The logarithm in double precision: below the knee the gain must come out as exactly 1, and near its
        start single precision would show as steps. */
    static float levelOf (float x) noexcept
    {
        const auto level = 20.0 * std::log10 (std::abs (static_cast<double> (x)));
        return level > static_cast<double> (decibels::floorDb) ? static_cast<float> (level)
                                                               : decibels::floorDb;
    }

    /** Above the knee's start. */
    float gainChangeDb (float levelDb) const noexcept
    {
        if (levelDb >= kneeEndDb)
            return thresholdDb - levelDb;

        const auto t = (levelDb - kneeStartDb) / kneeDb;
        return -kneeDb * t * t * 0.25f;
    }
};

} // namespace luna
