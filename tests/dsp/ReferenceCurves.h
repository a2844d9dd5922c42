#pragma once

#include "support/Signals.h"

#include <algorithm>
#include <cmath>

/** The curves in double precision, from the input's magnitude, the threshold in dB and the second control.
    They share no code with the product. */
namespace reference::curves
{
inline double hard (double x, double thresholdDb, double)
{
    return std::min (x, signals::toGain (thresholdDb));
}

inline double softI (double x, double thresholdDb, double kneeDb)
{
    const auto above = std::max (-100.0, signals::toDb (x)) - thresholdDb;

    if (above <= -kneeDb)
        return x;

    if (above >= kneeDb)
        return signals::toGain (thresholdDb);

    return x * signals::toGain (-std::pow (above + kneeDb, 2.0) / (4.0 * kneeDb));
}

inline double softII (double x, double thresholdDb, double)
{
    const auto g = signals::toGain (thresholdDb);

    if (x >= 1.0)
        return g;

    return thresholdDb < 0.0 ? std::abs (x - (1.0 - g) * std::pow (x, 1.0 / (1.0 - g))) : x;
}

inline double pressure (double x, double thresholdDb, double curve)
{
    const auto a = x / signals::toGain (thresholdDb);
    const auto limit = 2.0 + 0.5 * curve;
    const auto bow = 0.25 - (curve - 0.5) / 2.0; // the last term is its square

    if (a > limit)
        return 0.0;

    if (a > 1.0)
        return signals::toGain (thresholdDb) * (1.0 - std::pow ((a - 1.0) / (limit - 1.0), 2.0));

    return signals::toGain (thresholdDb)
           * ((1.0 + curve) * a + (1.0 - 2.0 * curve) * a * a + (curve - 1.0) * a * a * a
              - std::pow (a * (1.0 - a) * bow, 2.0));
}

inline double boost (double x, double thresholdDb, double amount)
{
    const auto t = signals::toGain (thresholdDb);
    const auto n = 3.0 + 47.0 * std::pow (1.0 - amount, 1.0 / 0.35);
    return x > t ? t : t * (x / t - std::pow (x / t, n) / n) * n / (n - 1.0);
}

inline double foldback (double x, double thresholdDb, double kneeDb)
{
    const auto level = std::max (-100.0, signals::toDb (x));
    auto out = level;

    if (level > thresholdDb + kneeDb)
    {
        out = 2.0 * thresholdDb - level;
    }
    else if (level > thresholdDb - kneeDb)
    {
        // A Bezier curve from start over the threshold to the reflected end, which is as low as the start.
        const auto t = (level - (thresholdDb - kneeDb)) / (2.0 * kneeDb);
        out = thresholdDb - kneeDb * ((1.0 - t) * (1.0 - t) + t * t);
    }

    return out > -100.0 ? signals::toGain (out) : 0.0;
}

inline double tanh (double x, double thresholdDb, double drive)
{
    return std::tanh (x / signals::toGain (thresholdDb) * (2.0 * drive + 1.0))
           * signals::toGain (thresholdDb);
}

inline double sin (double x, double thresholdDb, double drive)
{
    return std::sin (x / signals::toGain (thresholdDb) * (2.0 * drive + 1.0)) * signals::toGain (thresholdDb);
}
} // namespace reference::curves
