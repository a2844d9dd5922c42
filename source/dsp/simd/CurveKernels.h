#pragma once

#include "dsp/simd/KernelTable.h"
#include "dsp/simd/Register.h"

// The curves. Logarithm and power come from polynomials of our own in Estrin's order, with relative errors near
// 3e-8. A register whose samples all lie where a curve is simple takes the short way, which gives the same bits
// as the long one.

namespace
{
/** Of positive normal numbers. The relative error stays small about 1 too. */
ORVO_INLINE Float log2 (Float x)
{
    constexpr auto rootOfHalf = 0x3f3504f3;
    const auto bits = asInt (x);
    const auto octave = (bits - rootOfHalf) >> 23;
    const auto f = asFloat (bits - (octave << 23)) - broadcast (1.0f);

    const auto pair = [&] (float low, float high) ORVO_INLINE_LAMBDA
    { return multiplyAdd (broadcast (high), f, broadcast (low)); };

    const auto f2 = f * f, f4 = f2 * f2;
    const auto low =
        multiplyAdd (pair (0.48091064682f, -0.36070353295f), f2, pair (1.4426950036f, -0.72134734856f));
    const auto high =
        multiplyAdd (pair (0.21572146475f, -0.20724988419f), f2, pair (0.28791599025f, -0.23894802967f));
    const auto polynomial = multiplyAdd (multiplyAdd (broadcast (0.12579653492f), f4, high), f4, low);

    return multiplyAdd (polynomial, f, toFloat (octave));
}

/** Of exponents up to 0; 0 below -126. */
ORVO_INLINE Float exp2 (Float x)
{
    // Adding this leaves the nearest whole number in the lowest bits.
    const auto rounder = broadcast (12582912.0f);
    const auto clamped = max (x, broadcast (-126.0f));
    const auto rounded = clamped + rounder;
    const auto f = clamped - (rounded - rounder);

    const auto pair = [&] (float low, float high) ORVO_INLINE_LAMBDA
    { return multiplyAdd (broadcast (high), f, broadcast (low)); };

    const auto f2 = f * f;
    const auto high = multiplyAdd (pair (0.0013398924474f, 0.00015353723005f), f2,
                                   pair (0.055503323275f, 0.0096184362861f));
    const auto polynomial = multiplyAdd (high, f2, pair (0.69314720294f, 0.2402264792f));
    const auto mantissa = multiplyAdd (polynomial, f, broadcast (1.0f));
    const auto power = (asInt (rounded) - asInt (rounder) + 127) << 23;

    return asFloat (asInt (mantissa * asFloat (power)) & (x >= broadcast (-126.0f)));
}

ORVO_INLINE Float withSignOf (Float magnitude, Float x)
{
    return asFloat (asInt (magnitude) ^ (asInt (x) & ~0x7fffffff));
}

/** Calls `curve` with every register. It returns whether the register has changed. */
template <typename Curve>
ORVO_INLINE void apply (float* samples, size_t numSamples, Curve curve)
{
    forEach<width> (0, numSamples,
                    [&] (size_t i, size_t count) ORVO_INLINE_LAMBDA
                    {
                        auto x = loadUpTo (samples + i, count);

                        if (curve (x))
                            storeUpTo (samples + i, x, count);
                    });
}

void hardClip (float threshold, float* samples, size_t numSamples)
{
    const auto upper = broadcast (threshold), lower = broadcast (-threshold);

    apply (samples, numSamples,
           [&] (Float& x) ORVO_INLINE_LAMBDA
           {
               x = clamp (x, lower, upper);
               return true;
           });
}

void kneeClip (const simd::KneeCurve& c, float* samples, size_t numSamples)
{
    const auto start = broadcast (c.start), end = broadcast (c.end), threshold = broadcast (c.threshold);
    const auto inverseStart = broadcast (c.inverseStart), curvature = broadcast (-c.curvature);

    apply (samples, numSamples,
           [&] (Float& x) ORVO_INLINE_LAMBDA
           {
               const auto magnitude = abs (x);
               const auto isAbove = magnitude > start;

               if (! any (isAbove))
                   return false;

               const auto pinned = withSignOf (threshold, x);
               const auto isPinned = (magnitude >= end) & isAbove;
               auto y = pinned;

               if (any (isAbove & ~isPinned))
               {
                   const auto octaves = log2 (magnitude * inverseStart);
                   const auto bent = x * exp2 ((octaves * octaves) * curvature);
                   y = select (isPinned, pinned, bent);
               }

               x = select (isAbove, y, x);
               return true;
           });
}

void powerClip (const simd::PowerCurve& c, float* samples, size_t numSamples)
{
    const auto limit = broadcast (c.limit), limitOutput = broadcast (c.limitOutput);
    const auto inverseLimit = broadcast (c.inverseLimit), negligible = broadcast (c.negligible);
    const auto exponent = broadcast (c.exponent), inverseExponent = broadcast (c.inverseExponent);
    const auto firstGain = broadcast (c.firstGain), secondGain = broadcast (c.secondGain);

    apply (samples, numSamples,
           [&] (Float& x) ORVO_INLINE_LAMBDA
           {
               const auto magnitude = abs (x);
               const auto isPinned = magnitude >= limit;

               if (all (isPinned))
               {
                   x = withSignOf (limitOutput, x);
                   return true;
               }

               const auto a = magnitude * inverseLimit;
               auto y = a;

               if (! all (a <= negligible))
               {
                   const auto power = exp2 (exponent * log2 (a));
                   y = abs (a - power * inverseExponent);
               }

               x = withSignOf (select (isPinned, limitOutput, y * firstGain * secondGain), x);
               return true;
           });
}

void lift (const simd::LiftCurve& c, float* samples, size_t numSamples)
{
    const auto threshold = broadcast (c.threshold), limit = broadcast (c.limit);
    const auto one = broadcast (1.0f), inverseSpan = broadcast (c.inverseSpan);
    const auto c1 = broadcast (c.coefficients[0]), c2 = broadcast (c.coefficients[1]);
    const auto c3 = broadcast (c.coefficients[2]), c4 = broadcast (c.coefficients[3]);

    apply (samples, numSamples,
           [&] (Float& x) ORVO_INLINE_LAMBDA
           {
               const auto a = abs (x) / threshold;
               const auto below = multiplyAdd (multiplyAdd (c4, a, c3), a * a, multiplyAdd (c2, a, c1)) * a;
               const auto fall = (a - one) * inverseSpan;
               const auto above = asFloat (asInt (one - fall * fall) & ~(a > limit));

               x = withSignOf (select (a > one, above, below) * threshold, x);
               return true;
           });
}
} // namespace
