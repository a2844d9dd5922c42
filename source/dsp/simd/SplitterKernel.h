#pragma once

#include "dsp/simd/KernelTable.h"
#include "dsp/simd/Register.h"

// The crossover of ThreeBandSplitter with both channels and two branches side by side in the lanes of a
// register. Each lane does the sums of JUCE's LinkwitzRileyFilter in their order, so the results are the same
// to the last bit.

namespace
{
/** One second-order section in each lane. */
struct Section
{
    Float4 s1, s2;
};

struct SectionOutputs
{
    Float4 low, band, high;
};

struct SectionCoefficients
{
    Float4 g, damping, h;
};

ORVO_INLINE SectionOutputs run (Section& state, Float4 x, const SectionCoefficients& c)
{
    const auto high = ((x - c.damping * state.s1) - state.s2) * c.h;
    const auto band = c.g * high + state.s1;
    state.s1 = c.g * high + band;
    const auto low = c.g * band + state.s2;
    state.s2 = c.g * band + low;
    return { low, band, high };
}

/** The first two lanes of `a`, then the last two of `b`. */
ORVO_INLINE Float4 halves (Float4 a, Float4 b)
{
    return __builtin_shufflevector (a, b, 0, 1, 6, 7);
}

/** The crossover as a pipeline: in one tick the four sections work on four successive samples, so that none
    waits for another. */
struct Splitter
{
    SectionCoefficients lowCoefficients, highCoefficients;
    Float4 r2;

    /** The lanes are the channels and once more the channels; of the branches, low and rest; low and rest;
        mid and high. */
    Section first, second, third, fourth;

    /** What the sections work on in the next tick. */
    Float4 secondInput {}, thirdInput {}, fourthInput {};

    ORVO_INLINE void runFirst (Float4 x)
    {
        const auto y = run (first, x, lowCoefficients);
        secondInput = halves (y.low, y.high);
    }

    /** Low before its all-pass, and rest. */
    ORVO_INLINE Float4 runSecond()
    {
        const auto y = run (second, secondInput, lowCoefficients);
        return thirdInput = halves (y.low, y.high);
    }

    /** Low, in the first two lanes. */
    ORVO_INLINE Float4 runThird()
    {
        const auto y = run (third, thirdInput, highCoefficients);
        fourthInput = __builtin_shufflevector (y.low, y.high, 2, 3, 6, 7);
        return y.low - r2 * y.band + y.high;
    }

    /** Mid and high. */
    ORVO_INLINE Float4 runFourth()
    {
        const auto y = run (fourth, fourthInput, highCoefficients);
        return halves (y.low, y.high);
    }
};

ORVO_INLINE Section load (const simd::Integrators& a, const simd::Integrators& b, const simd::Integrators& c,
                          const simd::Integrators& d)
{
    return { Float4 { a.s1, b.s1, c.s1, d.s1 }, Float4 { a.s2, b.s2, c.s2, d.s2 } };
}

ORVO_INLINE void store (simd::Integrators& target, const Section& section, int lane)
{
    target = { section.s1[lane], section.s2[lane] };
}

ORVO_INLINE SectionCoefficients makeSection (float r2, float g, float h)
{
    return { broadcast<Float4> (g), broadcast<Float4> (r2 + g), broadcast<Float4> (h) };
}

/** With one channel, `right` stands for it too and its lanes are not stored. */
ORVO_INLINE Splitter makeSplitter (const simd::SplitterCoefficients& c, const simd::SplitterChannel& left,
                                   const simd::SplitterChannel& right)
{
    return { makeSection (c.r2, c.gLow, c.hLow),
             makeSection (c.r2, c.gHigh, c.hHigh),
             broadcast<Float4> (c.r2),
             load (left.lowShared, right.lowShared, left.lowShared, right.lowShared),
             load (left.lowSecond, right.lowSecond, left.restSecond, right.restSecond),
             load (left.phase, right.phase, left.highShared, right.highShared),
             load (left.midSecond, right.midSecond, left.highSecond, right.highSecond) };
}

ORVO_INLINE void storeChannel (simd::SplitterChannel& target, const Splitter& splitter, int channel)
{
    store (target.lowShared, splitter.first, channel);
    store (target.lowSecond, splitter.second, channel);
    store (target.restSecond, splitter.second, channel + 2);
    store (target.phase, splitter.third, channel);
    store (target.highShared, splitter.third, channel + 2);
    store (target.midSecond, splitter.fourth, channel);
    store (target.highSecond, splitter.fourth, channel + 2);
}

/** Between the channels' samples and the pipeline's registers stands a ring that holds a few chunks. */
struct SplitterRing
{
    static constexpr size_t chunk = 32;
    static constexpr size_t size = 2 * chunk;

    Float4 input[size];
    Float4 low[size], rest[size], midAndHigh[size];
    Int4 isSafe { -1, -1, -1, -1 };

    /** Sections whose sample lies outside the block rest. */
    ORVO_INLINE void tickAtTheEdge (Splitter& splitter, size_t t, size_t numSamples)
    {
        if (t >= 3)
            midAndHigh[(t - 3) % size] = splitter.runFourth();

        if (t >= 2 && t - 2 < numSamples)
            low[(t - 2) % size] = splitter.runThird();

        if (t >= 1 && t - 1 < numSamples)
            rest[(t - 1) % size] = splitter.runSecond();

        if (t < numSamples)
            splitter.runFirst (input[t % size]);
    }

    ORVO_INLINE void tick (Splitter& splitter, size_t t)
    {
        midAndHigh[(t - 3) % size] = splitter.runFourth();
        low[(t - 2) % size] = splitter.runThird();
        rest[(t - 1) % size] = splitter.runSecond();
        splitter.runFirst (input[t % size]);
    }

    ORVO_INLINE void check (Float4 x, Float4 limit) { isSafe &= abs (x) <= limit; }

    /** `count` is at most 4. */
    ORVO_INLINE void readInput (const float* left, const float* right, size_t i, size_t count, Float4 limit)
    {
        const auto l = loadUpTo<Float4> (left + i, count), r = loadUpTo<Float4> (right + i, count);
        check (l, limit);
        check (r, limit);

        auto* target = input + i % size;
        target[0] = __builtin_shufflevector (l, r, 0, 4, 0, 4);
        target[1] = __builtin_shufflevector (l, r, 1, 5, 1, 5);
        target[2] = __builtin_shufflevector (l, r, 2, 6, 2, 6);
        target[3] = __builtin_shufflevector (l, r, 3, 7, 3, 7);
    }

    /** Turns the lanes of `count` samples, at most 4, into the channels' samples. */
    ORVO_INLINE void writeOutputs (const simd::SplitterOutputs& outputs, size_t numChannels, size_t i,
                                   size_t count, Float4 limit)
    {
        Float4 rows[8] {};

        for (size_t k = 0; k < count; ++k)
        {
            rows[k] = halves (low[(i + k) % size], rest[(i + k) % size]);
            rows[k + 4] = midAndHigh[(i + k) % size];
            check (rows[k], limit);
            check (rows[k + 4], limit);
        }

        transpose4 (rows[0], rows[1], rows[2], rows[3]);
        transpose4 (rows[4], rows[5], rows[6], rows[7]);

        for (size_t channel = 0; channel < numChannels; ++channel)
        {
            storeUpTo (outputs.low[channel] + i, rows[channel], count);
            storeUpTo (outputs.rest[channel] + i, rows[channel + 2], count);
            storeUpTo (outputs.mid[channel] + i, rows[channel + 4], count);
            storeUpTo (outputs.high[channel] + i, rows[channel + 6], count);
        }
    }
};

/** `numChannels` is 1 or 2; known where this is inlined. */
ORVO_INLINE bool splitChannels (const simd::SplitterCoefficients& coefficients,
                                simd::SplitterChannel* channels, size_t numChannels,
                                simd::ConstChannels input, const simd::SplitterOutputs& outputs,
                                size_t numSamples, float limit)
{
    constexpr size_t delay = 3;
    const auto last = numChannels - 1;
    const auto limits = broadcast<Float4> (limit);
    auto splitter = makeSplitter (coefficients, channels[0], channels[last]);
    SplitterRing ring;
    size_t written = 0;

    const auto read = [&] (size_t i, size_t count) ORVO_INLINE_LAMBDA
    { ring.readInput (input[0], input[last], i, count, limits); };

    const auto write = [&] (size_t i, size_t count) ORVO_INLINE_LAMBDA
    { ring.writeOutputs (outputs, numChannels, i, count, limits); };

    for (size_t start = 0; start < numSamples; start += SplitterRing::chunk)
    {
        const auto end = start + SplitterRing::chunk < numSamples ? start + SplitterRing::chunk : numSamples;
        forEach<4> (start, end, read);

        auto t = start;
        for (; t < end && t < delay; ++t)
            ring.tickAtTheEdge (splitter, t, numSamples);
        for (; t < end; ++t)
            ring.tick (splitter, t);

        // What has come through, in whole registers.
        if (end == start + SplitterRing::chunk)
        {
            forEach<4> (written, end - 4, write);
            written = end - 4;
        }
    }

    for (auto t = numSamples; t < numSamples + delay; ++t)
        ring.tickAtTheEdge (splitter, t, numSamples);

    forEach<4> (written, numSamples, write);

    for (size_t channel = 0; channel < numChannels; ++channel)
        storeChannel (channels[channel], splitter, static_cast<int> (channel));

    return all (ring.isSafe);
}

bool split (const simd::SplitterCoefficients& coefficients, simd::SplitterChannel* channels,
            size_t numChannels, simd::ConstChannels input, const simd::SplitterOutputs& outputs,
            size_t numSamples, float limit)
{
    return numChannels == 2 ? splitChannels (coefficients, channels, 2, input, outputs, numSamples, limit)
                            : splitChannels (coefficients, channels, 1, input, outputs, numSamples, limit);
}
} // namespace
