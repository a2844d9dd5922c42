#pragma once

#include "dsp/simd/KernelTable.h"
#include "dsp/simd/Register.h"

// The peak envelope as a scan. One sample maps the level e to max (a, (1 - c) a + c e), and such maps compose:
// a whole segment maps e to max (A, B + c^n e). So every lane runs through a segment of its own, and the
// segments are put together at the end.

namespace
{
/** Columns become rows, within each group of four lanes. */
ORVO_INLINE void transposeGroups (Float& a, Float& b, Float& c, Float& d)
{
#if defined(__AVX2__)
    const auto ab01 = __builtin_shufflevector (a, b, 0, 8, 1, 9, 4, 12, 5, 13);
    const auto cd01 = __builtin_shufflevector (c, d, 0, 8, 1, 9, 4, 12, 5, 13);
    const auto ab23 = __builtin_shufflevector (a, b, 2, 10, 3, 11, 6, 14, 7, 15);
    const auto cd23 = __builtin_shufflevector (c, d, 2, 10, 3, 11, 6, 14, 7, 15);

    a = __builtin_shufflevector (ab01, cd01, 0, 1, 8, 9, 4, 5, 12, 13);
    b = __builtin_shufflevector (ab01, cd01, 2, 3, 10, 11, 6, 7, 14, 15);
    c = __builtin_shufflevector (ab23, cd23, 0, 1, 8, 9, 4, 5, 12, 13);
    d = __builtin_shufflevector (ab23, cd23, 2, 3, 10, 11, 6, 7, 14, 15);
#else
    transpose4 (a, b, c, d);
#endif
}

/** Four samples of segment `row`, and of the one four further if there are eight lanes. */
ORVO_INLINE Float loadRow (const float* samples, size_t segmentLength, size_t row)
{
    const auto near = load<Float4> (samples + row * segmentLength);
#if defined(__AVX2__)
    const auto far = load<Float4> (samples + (row + 4) * segmentLength);
    return __builtin_shufflevector (near, far, 0, 1, 2, 3, 4, 5, 6, 7);
#else
    return near;
#endif
}

/** The level behind `numRegisters` times `width` segments, a multiple of four samples long each. */
template <size_t numRegisters>
ORVO_INLINE float scan (float level, float release, const float* left, const float* right,
                        size_t segmentLength)
{
    const auto releases = broadcast (release), attacks = broadcast (1.0f - release);
    Float held[numRegisters] {}, fed[numRegisters] {};

    for (size_t t = 0; t < segmentLength; t += 4)
    {
        for (size_t n = 0; n < numRegisters; ++n)
        {
            const auto first = n * width * segmentLength + t;
            Float rows[4];

            for (size_t row = 0; row < 4; ++row)
            {
                const auto r = max (abs (loadRow (right + first, segmentLength, row)), Float {});
                rows[row] = max (abs (loadRow (left + first, segmentLength, row)), r);
            }

            transposeGroups (rows[0], rows[1], rows[2], rows[3]);

            for (const auto magnitude : rows)
            {
                const auto entering = attacks * magnitude;
                held[n] = max (magnitude, multiplyAdd (releases, held[n], entering));
                fed[n] = multiplyAdd (releases, fed[n], entering);
            }
        }
    }

    auto decay = 1.0, factor = static_cast<double> (release);
    for (auto n = segmentLength; n > 0; n /= 2, factor *= factor)
        decay *= n % 2 != 0 ? factor : 1.0;

    // In double precision: the error of a rounded decay would be the same each time, and add up over a release.
    auto exact = static_cast<double> (level);

    for (size_t n = 0; n < numRegisters; ++n)
    {
        for (size_t lane = 0; lane < width; ++lane)
        {
            const auto released = static_cast<double> (fed[n][lane]) + decay * exact;
            const auto peak = static_cast<double> (held[n][lane]);
            exact = released > peak ? released : peak;
        }
    }

    return static_cast<float> (exact);
}

float envelope (float level, float release, const float* left, const float* right, size_t numSamples)
{
    size_t done = 0;

    if (const auto length = numSamples / (8 * width) * 4)
    {
        level = scan<2> (level, release, left, right, length);
        done = length * 2 * width;
    }

    if (const auto length = (numSamples - done) / (4 * width) * 4)
    {
        level = scan<1> (level, release, left + done, right + done, length);
        done += length * width;
    }

    for (auto i = done; i < numSamples; ++i)
    {
        const auto l = __builtin_fabsf (left[i]), r = __builtin_fabsf (right[i]);
        auto magnitude = l > 0.0f ? l : 0.0f;
        magnitude = r > magnitude ? r : magnitude;
        level = magnitude < level ? magnitude + (level - magnitude) * release : magnitude;
    }

    return level;
}
} // namespace
