#pragma once

#include <algorithm>
#include <cmath>

/** The curves as one would write them down at first: the formula of each, sample by sample, in single
    precision, with nothing hoisted but what depends on the settings alone. What the product's block forms are
    measured against. */
namespace reference
{
inline float toGain (float db)
{
    return db > -100.0f ? std::pow (10.0f, 0.05f * db) : 0.0f;
}

inline float toDb (float gain)
{
    return gain > 0.0f ? std::max (-100.0f, 20.0f * std::log10 (gain)) : -100.0f;
}

/** A clamp. */
struct Hard
{
    float threshold = 1.0f;

    float operator() (float x) const { return std::clamp (x, -threshold, threshold); }
};

/** Gain in dB: 0 below the knee, -knee t^2 / 4 within it, down to the threshold above. The level is taken in
    double precision. */
struct SoftOne
{
    float thresholdDb = 0.0f;
    float kneeDb = 0.0f;

    float operator() (float x) const
    {
        const auto level = static_cast<float> (20.0 * std::log10 (std::abs (static_cast<double> (x))));

        if (level <= thresholdDb - kneeDb)
            return x;

        if (level >= thresholdDb + kneeDb)
            return x * toGain (thresholdDb - level);

        const auto t = (level - (thresholdDb - kneeDb)) / kneeDb;
        return x * toGain (-0.25f * kneeDb * t * t);
    }
};

/** |x| - |x|^n / n with n = 1 / (1 - threshold), for thresholds below 1. */
struct SoftTwo
{
    float threshold = 0.5f;
    float exponent = 1.0f / (1.0f - threshold);

    float operator() (float x) const
    {
        const auto a = std::abs (x);
        const auto y = a < 1.0f ? a - std::pow (a, exponent) / exponent : threshold;
        return std::copysign (y, x);
    }
};

/** A quartic up to the threshold, then a parabola that falls to 0 at (2 + curve / 2) times it. */
struct Pressure
{
    float threshold = 1.0f;
    float curve = 0.0f;

    float operator() (float x) const
    {
        const auto a = std::abs (x) / threshold;
        const auto end = 2.0f + 0.5f * curve;

        if (a > end)
            return 0.0f;

        if (a > 1.0f)
        {
            const auto u = (a - 1.0f) / (end - 1.0f);
            return std::copysign (threshold * (1.0f - u * u), x);
        }

        const auto d = 0.25f * (1.0f - curve) * (1.0f - curve);
        const auto bump = a * a * (1.0f - a) * (1.0f - a);
        const auto y = (1.0f + curve) * a + (1.0f - 2.0f * curve) * a * a + (curve - 1.0f) * a * a * a;
        return std::copysign (threshold * (y - d * bump), x);
    }
};

/** (a - a^n / n) n / (n - 1) of a = |x| / threshold, n from 50 down to 3. */
struct Boost
{
    float threshold = 1.0f;
    float exponent = 50.0f;

    float operator() (float x) const
    {
        const auto a = std::abs (x) / threshold;
        const auto n = exponent;
        const auto y = a < 1.0f ? (a - std::pow (a, n) / n) * n / (n - 1.0f) : 1.0f;
        return std::copysign (threshold * y, x);
    }
};

/** The level in dB reflected about the threshold, through a quadratic Bezier curve in the knee. */
struct Foldback
{
    float thresholdDb = 0.0f;
    float kneeDb = 0.0f;

    float operator() (float x) const
    {
        const auto level = toDb (std::abs (x));
        auto out = level;

        if (level > thresholdDb + kneeDb)
        {
            out = 2.0f * thresholdDb - level;
        }
        else if (level > thresholdDb - kneeDb)
        {
            const auto t = (level - (thresholdDb - kneeDb)) / (2.0f * kneeDb);
            const auto w = 1.0f - t;
            out = (w * w + t * t) * (thresholdDb - kneeDb) + 2.0f * w * t * thresholdDb;
        }

        return std::copysign (toGain (out), x);
    }
};

struct Tanh
{
    float threshold = 1.0f;
    float drive = 1.0f;

    float operator() (float x) const { return threshold * std::tanh (drive * x / threshold); }
};

struct Sine
{
    float threshold = 1.0f;
    float drive = 1.0f;

    float operator() (float x) const { return threshold * std::sin (drive * x / threshold); }
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
