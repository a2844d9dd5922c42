#pragma once

#include <algorithm>
#include <cmath>

/** The curves as one would write them down at first: the formula of each, sample by sample, with nothing hoisted
    but what depends on the settings alone, which are the threshold in dB and the second control. In single
    precision they are what the product's block forms are measured against, in double precision what is right. */
namespace reference
{
template <typename Number>
Number toGain (Number db)
{
    return db > Number (-100) ? std::pow (Number (10), Number (0.05) * db) : Number (0);
}

template <typename Number>
Number toDb (Number gain)
{
    return gain > Number (0) ? std::max (Number (-100), Number (20) * std::log10 (gain)) : Number (-100);
}

/** A clamp. */
template <typename Number = float>
struct Hard
{
    explicit Hard (Number thresholdDb, Number = 0) : threshold (toGain (thresholdDb)) {}

    Number operator() (Number x) const { return std::clamp (x, -threshold, threshold); }

    Number threshold;
};

/** Gain in dB: 0 below the knee, -knee t^2 / 4 within it, down to the threshold above. The level is taken in
    double precision. */
template <typename Number = float>
struct SoftOne
{
    SoftOne (Number threshold, Number knee) : thresholdDb (threshold), kneeDb (knee) {}

    Number operator() (Number x) const
    {
        const auto level = static_cast<Number> (20.0 * std::log10 (std::abs (static_cast<double> (x))));

        if (level <= thresholdDb - kneeDb)
            return x;

        if (level >= thresholdDb + kneeDb)
            return x * toGain (thresholdDb - level);

        const auto t = (level - (thresholdDb - kneeDb)) / kneeDb;
        return x * toGain (Number (-0.25) * kneeDb * t * t);
    }

    Number thresholdDb, kneeDb;
};

/** |x| - |x|^n / n with n = 1 / (1 - threshold), for thresholds below 1. */
template <typename Number = float>
struct SoftTwo
{
    explicit SoftTwo (Number thresholdDb, Number = 0) : threshold (toGain (thresholdDb)) {}

    Number operator() (Number x) const
    {
        const auto a = std::abs (x);
        const auto y = a < Number (1) ? a - std::pow (a, exponent) / exponent : threshold;
        return std::copysign (y, x);
    }

    Number threshold, exponent = Number (1) / (Number (1) - threshold);
};

/** A quartic up to the threshold, then a parabola that falls to 0 at (2 + curve / 2) times it. */
template <typename Number = float>
struct Pressure
{
    Pressure (Number thresholdDb, Number lift) : threshold (toGain (thresholdDb)), curve (lift) {}

    Number operator() (Number x) const
    {
        constexpr auto one = Number (1);
        const auto a = std::abs (x) / threshold;
        const auto end = Number (2) + Number (0.5) * curve;

        if (a > end)
            return 0;

        if (a > one)
        {
            const auto u = (a - one) / (end - one);
            return std::copysign (threshold * (one - u * u), x);
        }

        const auto d = Number (0.25) * (one - curve) * (one - curve);
        const auto bump = a * a * (one - a) * (one - a);
        const auto y = (one + curve) * a + (one - Number (2) * curve) * a * a + (curve - one) * a * a * a;
        return std::copysign (threshold * (y - d * bump), x);
    }

    Number threshold, curve;
};

/** (a - a^n / n) n / (n - 1) of a = |x| / threshold, n from 50 down to 3. */
template <typename Number = float>
struct Boost
{
    Boost (Number thresholdDb, Number amount)
        : threshold (toGain (thresholdDb)),
          n (Number (3) + Number (47) * std::pow (Number (1) - amount, Number (1) / Number (0.35)))
    {
    }

    Number operator() (Number x) const
    {
        const auto a = std::abs (x) / threshold;
        const auto y = a < Number (1) ? (a - std::pow (a, n) / n) * n / (n - Number (1)) : Number (1);
        return std::copysign (threshold * y, x);
    }

    Number threshold, n;
};

/** The level in dB reflected about the threshold, through a quadratic Bezier curve in the knee. */
template <typename Number = float>
struct Foldback
{
    Foldback (Number threshold, Number knee) : thresholdDb (threshold), kneeDb (knee) {}

    Number operator() (Number x) const
    {
        const auto level = toDb (std::abs (x));
        auto out = level;

        if (level > thresholdDb + kneeDb)
        {
            out = Number (2) * thresholdDb - level;
        }
        else if (level > thresholdDb - kneeDb)
        {
            const auto t = (level - (thresholdDb - kneeDb)) / (Number (2) * kneeDb);
            const auto w = Number (1) - t;
            out = (w * w + t * t) * (thresholdDb - kneeDb) + Number (2) * w * t * thresholdDb;
        }

        return std::copysign (toGain (out), x);
    }

    Number thresholdDb, kneeDb;
};

/** What Tanh and Sine share: a signal driven from once to three times. */
template <typename Number>
struct Driven
{
    Driven (Number thresholdDb, Number amount)
        : threshold (toGain (thresholdDb)), drive (Number (1) + Number (2) * amount)
    {
    }

    Number driven (Number x) const { return drive * x / threshold; }

    Number threshold, drive;
};

template <typename Number = float>
struct Tanh : Driven<Number>
{
    using Driven<Number>::Driven;

    Number operator() (Number x) const { return this->threshold * std::tanh (this->driven (x)); }
};

template <typename Number = float>
struct Sine : Driven<Number>
{
    using Driven<Number>::Driven;

    Number operator() (Number x) const { return this->threshold * std::sin (this->driven (x)); }
};

/** Peak of the louder channel: instant attack, 40 dB of release in two seconds. */
struct Envelope
{
    explicit Envelope (double sampleRate) : release (static_cast<float> (std::pow (0.01, 0.5 / sampleRate)))
    {
    }

    void operator() (float left, float right)
    {
        const auto a = std::max (std::abs (left), std::abs (right));
        level = a < level ? a + (level - a) * release : a;
    }

    float release;
    float level = 0.0f;
};
} // namespace reference
