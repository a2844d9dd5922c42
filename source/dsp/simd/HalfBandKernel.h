#pragma once

#include "dsp/simd/KernelTable.h"
#include "dsp/simd/Register.h"

// The filters of JUCE's equiripple half-band oversampling with successive samples in the lanes of a register.
// Each lane adds up the taps in JUCE's order, so the results are the same to the last bit.

namespace
{
/** The taps' sums for `numRegisters` registers of successive outputs. In the line, the first output's oldest
    input comes first. */
template <size_t numRegisters>
ORVO_INLINE void convolve (const simd::HalfBand& filter, const float* line, Float (&sums)[numRegisters])
{
    const auto newest = 2 * filter.numTaps - 1;

    for (auto& sum : sums)
        sum = Float {};

    for (size_t tap = 0; tap < filter.numTaps; ++tap)
    {
        const auto coefficient = broadcast (filter.taps[tap]);
        const auto* early = line + tap;
        const auto* late = line + newest - tap;

        for (size_t n = 0; n < numRegisters; ++n)
            sums[n] = sums[n] + (load (early + n * width) + load (late + n * width)) * coefficient;
    }
}

/** Calls `body (first, sums, n)` with the sums of n outputs from `first` on. The last sums may hold more. */
template <typename Body>
ORVO_INLINE void forEachSum (const simd::HalfBand& filter, const float* line, size_t numOutputs, Body body)
{
    constexpr size_t registersAtOnce = 4;
    size_t i = 0;

    for (; i + registersAtOnce * width <= numOutputs; i += registersAtOnce * width)
    {
        Float sums[registersAtOnce];
        convolve (filter, line + i, sums);

        for (size_t n = 0; n < registersAtOnce; ++n)
            body (i + n * width, sums[n], width);
    }

    for (; i < numOutputs; i += width)
    {
        Float sums[1];
        convolve (filter, line + i, sums);
        body (i, sums[0], numOutputs - i < width ? numOutputs - i : width);
    }
}

/** The end of what a line holds becomes the state for the next chunk. */
ORVO_INLINE void shift (float* line, size_t stateLength, size_t numSamples)
{
    __builtin_memmove (line, line + numSamples, stateLength * sizeof (float));
}

void halfBandUpChunk (const simd::HalfBand& filter, float* line, const float* input, float* output,
                      size_t numInputs)
{
    const auto stateLength = 2 * filter.numTaps - 1;
    auto* newest = line + stateLength;
    size_t i = 0;

    for (; i + width <= numInputs; i += width)
        store (newest + i, load (input + i) * broadcast (2.0f));
    for (; i < numInputs; ++i)
        newest[i] = 2.0f * input[i];

    const auto centre = broadcast (filter.centre);
    const auto* middle = line + filter.numTaps;

    forEachSum (filter, line, numInputs,
                [&] (size_t first, Float sums, size_t count) ORVO_INLINE_LAMBDA
                {
                    const auto between = load (middle + first) * centre;
                    auto* target = output + 2 * first;

                    if (count == width)
                    {
                        store (target, Lanes::interleaveLow (sums, between));
                        store (target + width, Lanes::interleaveHigh (sums, between));
                        return;
                    }

                    for (size_t k = 0; k < count; ++k)
                    {
                        target[2 * k] = sums[k];
                        target[2 * k + 1] = between[k];
                    }
                });

    shift (line, stateLength, numInputs);
}

void halfBandUp (const simd::HalfBand& filter, float* line, const float* input, float* output,
                 size_t numInputs)
{
    for (size_t i = 0; i < numInputs; i += simd::halfBandChunk)
    {
        const auto rest = numInputs - i;
        halfBandUpChunk (filter, line, input + i, output + 2 * i,
                         rest < simd::halfBandChunk ? rest : simd::halfBandChunk);
    }
}

void halfBandDownChunk (const simd::HalfBand& filter, float* evenLine, float* oddLine, const float* input,
                        float* output, size_t numOutputs)
{
    const auto stateLength = 2 * filter.numTaps - 1;
    auto* newestEven = evenLine + stateLength;
    auto* newestOdd = oddLine + filter.numTaps;
    size_t i = 0;

    for (; i + width <= numOutputs; i += width)
    {
        const auto a = load (input + 2 * i), b = load (input + 2 * i + width);
        store (newestEven + i, Lanes::even (a, b));
        store (newestOdd + i, Lanes::odd (a, b));
    }

    for (; i < numOutputs; ++i)
    {
        newestEven[i] = input[2 * i];
        newestOdd[i] = input[2 * i + 1];
    }

    const auto centre = broadcast (filter.centre);

    forEachSum (filter, evenLine, numOutputs,
                [&] (size_t first, Float sums, size_t count) ORVO_INLINE_LAMBDA
                {
                    const auto y = sums + load (oddLine + first) * centre;

                    if (count == width)
                        store (output + first, y);
                    else
                        storeUpTo (output + first, y, count);
                });

    shift (evenLine, stateLength, numOutputs);
    shift (oddLine, filter.numTaps, numOutputs);
}

void halfBandDown (const simd::HalfBand& filter, float* evenLine, float* oddLine, const float* input,
                   float* output, size_t numOutputs)
{
    for (size_t i = 0; i < numOutputs; i += simd::halfBandChunk)
    {
        const auto rest = numOutputs - i;
        halfBandDownChunk (filter, evenLine, oddLine, input + 2 * i, output + i,
                           rest < simd::halfBandChunk ? rest : simd::halfBandChunk);
    }
}

bool isWithin (const float* samples, size_t numSamples, float limit)
{
    auto isSafe = ~Int {};
    const auto limits = broadcast (limit);

    const auto check = [&] (size_t i, size_t count) ORVO_INLINE_LAMBDA
    { isSafe &= abs (loadUpTo (samples + i, count)) <= limits; };

    forEach<width> (0, numSamples, check);
    return all (isSafe);
}
} // namespace
