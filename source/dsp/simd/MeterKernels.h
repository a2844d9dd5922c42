#pragma once

#include "dsp/simd/KernelTable.h"
#include "dsp/simd/Register.h"

// The meters with both channels in the lanes of a register. Each lane does the sums of the plain forms in their
// order, so the states are the same to the last bit.

namespace
{
/** Two doubles, from the first two lanes and back to them. */
using Double2 [[gnu::vector_size (16)]] = double;
using Long2 [[gnu::vector_size (16)]] = long long;

ORVO_INLINE Double2 toDoubles (Float4 x)
{
#if defined(__SSE2__)
    return _mm_cvtps_pd (x);
#elif defined(__aarch64__)
    return vcvt_f64_f32 (vget_low_f32 (x));
#else
    return Double2 { x[0], x[1] };
#endif
}

ORVO_INLINE Float4 toFloats (Double2 x)
{
#if defined(__SSE2__)
    return _mm_cvtpd_ps (x);
#elif defined(__aarch64__)
    return vcombine_f32 (vcvt_f32_f64 (x), vdup_n_f32 (0.0f));
#else
    return Float4 { static_cast<float> (x[0]), static_cast<float> (x[1]), 0.0f, 0.0f };
#endif
}

template <typename Doubles>
struct BiquadLanes
{
    Doubles b0, b1, b2, a1, a2;
    Doubles w1, w2;

    ORVO_INLINE Doubles run (Doubles x)
    {
        const auto w = (x - a1 * w1) - a2 * w2;
        const auto y = (b0 * w + b1 * w1) + b2 * w2;
        w2 = w1;
        w1 = w;
        return y;
    }
};

using BiquadPair = BiquadLanes<Double2>;

ORVO_INLINE BiquadPair load (const simd::Biquad& c, const simd::BiquadState& state)
{
    return { Double2 { c.b0, c.b0 },
             Double2 { c.b1, c.b1 },
             Double2 { c.b2, c.b2 },
             Double2 { c.a1, c.a1 },
             Double2 { c.a2, c.a2 },
             Double2 { state.z1[0], state.z1[1] },
             Double2 { state.z2[0], state.z2[1] } };
}

ORVO_INLINE void store (simd::BiquadState& target, const BiquadPair& lanes)
{
    for (auto channel = 0; channel < 2; ++channel)
    {
        target.z1[channel] = lanes.w1[channel];
        target.z2[channel] = lanes.w2[channel];
    }
}

/** In single precision, with what is nearly zero as zero. What is no number stays. */
ORVO_INLINE Float4 flushed (Double2 y, Double2 quietest)
{
    constexpr auto all = 0x7fffffffffffffffLL;
    const auto magnitude = reinterpret_cast<Double2> (reinterpret_cast<Long2> (y) & Long2 { all, all });
    return toFloats (reinterpret_cast<Double2> (reinterpret_cast<Long2> (y) & ~(magnitude <= quietest)));
}

/** Both filters of both channels. The second filter works a chunk behind the first: it never waits. */
struct Weigher
{
    static constexpr size_t chunk = 16;

    BiquadPair first, second;
    Double2 quietest;
    Double2 sum;
    Int4 isFinite;
    simd::ConstChannels input;
    simd::Channels squares;

    /** Outputs of the first filter: of the chunk under way and of the one before, in turn. */
    Double2 between[2][chunk];

    ORVO_INLINE Double2 inputAt (size_t i) const { return toDoubles (Float4 { input[0][i], input[1][i] }); }

    ORVO_INLINE void keep (Float4 square, size_t i)
    {
        isFinite &= square <= broadcast<Float4> (__FLT_MAX__);
        squares[0][i] = square[0];
        squares[1][i] = square[1];
    }

    ORVO_INLINE void runFirst (Double2* target, size_t start, size_t count)
    {
        for (size_t k = 0; k < count; ++k)
            target[k] = toDoubles (flushed (first.run (inputAt (start + k)), quietest));
    }

    template <bool isGuarded>
    ORVO_INLINE void runSecond (const Double2* source, size_t start, size_t count)
    {
        for (size_t k = 0; k < count; ++k)
        {
            const auto y = flushed (second.run (source[k]), quietest);
            const auto square = y * y;
            sum += toDoubles (square);

            if constexpr (isGuarded)
                keep (square, start + k);
        }
    }

    /** The first filter from `start` on, and the second one on the chunk before. */
    template <bool isGuarded>
    ORVO_INLINE void runBoth (Double2* target, const Double2* source, size_t start)
    {
        // Copies, which the compiler keeps in registers.
        auto a = first, b = second;
        const auto small = quietest;
        auto total = sum;

        for (size_t k = 0; k < chunk; ++k)
        {
            target[k] = toDoubles (flushed (a.run (inputAt (start + k)), small));
            const auto y = flushed (b.run (source[k]), small);
            const auto square = y * y;
            total += toDoubles (square);

            if constexpr (isGuarded)
                keep (square, start + k - chunk);
        }

        first = a;
        second = b;
        sum = total;
    }

    template <bool isGuarded>
    ORVO_INLINE void run (size_t numSamples)
    {
        size_t start = 0;

        for (; start + chunk <= numSamples; start += chunk)
        {
            auto* target = between[start / chunk % 2];

            if (start == 0)
                runFirst (target, start, chunk);
            else
                runBoth<isGuarded> (target, between[(start / chunk + 1) % 2], start);
        }

        if (start > 0)
            runSecond<isGuarded> (between[(start / chunk + 1) % 2], start - chunk, chunk);

        runFirst (between[0], start, numSamples - start);
        runSecond<isGuarded> (between[0], start, numSamples - start);
    }
};

bool weighAndSquare (simd::Weighting& weighting, simd::ConstChannels input, simd::Channels squares,
                     double* sums, size_t numSamples)
{
    Weigher weigher { load (weighting.first, weighting.firstState),
                      load (weighting.second, weighting.secondState),
                      Double2 { weighting.quietest, weighting.quietest },
                      Double2 { sums[0], sums[1] },
                      Int4 { -1, -1, -1, -1 },
                      input,
                      squares,
                      {} };

    if (squares != nullptr)
        weigher.run<true> (numSamples);
    else
        weigher.run<false> (numSamples);

    store (weighting.firstState, weigher.first);
    store (weighting.secondState, weigher.second);
    sums[0] = weigher.sum[0];
    sums[1] = weigher.sum[1];
    return (weigher.isFinite[0] & weigher.isFinite[1]) != 0;
}

/** The first two lanes are the channels. */
struct LevelRegisters
{
    Float4 peak, coefficient, maxPeak, sum, maxSum;

    /** An operand that is no number passes through a maximum as in the plain form: max yields its second. */
    ORVO_INLINE void step (Float4 x, Float4 square, Float4 oldest)
    {
        peak = max (x + (peak - x) * coefficient, x);
        maxPeak = max (peak, maxPeak);
        sum = (sum + square) - oldest;
        maxSum = max (sum, maxSum);
    }
};

ORVO_INLINE Float4 lanesOf (const float (&pair)[2])
{
    return Float4 { pair[0], pair[1] };
}

/** The other two lanes in front. */
ORVO_INLINE Float4 upper (Float4 x)
{
    return __builtin_shufflevector (x, x, 2, 3, 2, 3);
}

void trackLevels (simd::LevelLanes& lanes, simd::ConstChannels input, simd::Channels squares,
                  size_t numSamples)
{
    LevelRegisters state { lanesOf (lanes.peakLevel), lanesOf (lanes.peakCoefficient),
                           lanesOf (lanes.maxPeak), lanesOf (lanes.rmsSum), lanesOf (lanes.maxRmsSum) };
    Float4 largest {};

    const auto run = [&] (size_t i, size_t count) ORVO_INLINE_LAMBDA
    {
        const auto l = abs (loadUpTo<Float4> (input[0] + i, count)),
                   r = abs (loadUpTo<Float4> (input[1] + i, count));
        const auto oldL = loadUpTo<Float4> (squares[0] + i, count),
                   oldR = loadUpTo<Float4> (squares[1] + i, count);
        const Float4 x[] { __builtin_shufflevector (l, r, 0, 4, 1, 5),
                           __builtin_shufflevector (l, r, 2, 6, 3, 7) };
        const Float4 oldest[] { __builtin_shufflevector (oldL, oldR, 0, 4, 1, 5),
                                __builtin_shufflevector (oldL, oldR, 2, 6, 3, 7) };
        storeUpTo (squares[0] + i, l * l, count);
        storeUpTo (squares[1] + i, r * r, count);

        for (size_t k = 0; k < count; ++k)
        {
            const auto isOdd = k % 2 != 0;
            const auto sample = isOdd ? upper (x[k / 2]) : x[k / 2];
            state.step (sample, sample * sample, isOdd ? upper (oldest[k / 2]) : oldest[k / 2]);
        }

        largest = max (x[0], max (x[1], largest));
    };

    forEach<4> (0, numSamples, run);

    for (auto channel = 0; channel < 2; ++channel)
    {
        lanes.peakLevel[channel] = state.peak[channel];
        lanes.maxPeak[channel] = state.maxPeak[channel];
        lanes.rmsSum[channel] = state.sum[channel];
        lanes.maxRmsSum[channel] = state.maxSum[channel];
        lanes.largest[channel] = max (largest, upper (largest))[channel];
    }
}
} // namespace
