#pragma once

// Registers of floats as the compiler's vector types, with the few operations that these lack. Everything has
// internal linkage and is always inlined; see Kernels.h.

#if defined(__SSE2__)
    #include <immintrin.h>
#endif

#include <stddef.h>

#define ORVO_INLINE [[maybe_unused, gnu::always_inline]] inline

namespace
{
/** Four lanes, whatever the instruction set. */
using Float4 [[gnu::vector_size (16)]] = float;
using Int4 [[gnu::vector_size (16)]] = int;

ORVO_INLINE Float4 broadcast4 (float x)
{
    return Float4 { x, x, x, x };
}

/** Neither needs alignment. */
ORVO_INLINE Float4 load4 (const float* source)
{
    Float4 x;
    __builtin_memcpy (&x, source, sizeof (x));
    return x;
}

ORVO_INLINE void store4 (float* target, Float4 x)
{
    __builtin_memcpy (target, &x, sizeof (x));
}

/** The first `count` floats; the other lanes are 0. */
ORVO_INLINE Float4 loadUpTo4 (const float* source, size_t count)
{
    if (count == 4)
        return load4 (source);

    Float4 x {};
    for (size_t i = 0; i < count; ++i)
        x[i] = source[i];
    return x;
}

ORVO_INLINE void storeUpTo4 (float* target, Float4 x, size_t count)
{
    if (count == 4)
        return store4 (target, x);

    for (size_t i = 0; i < count; ++i)
        target[i] = x[i];
}

ORVO_INLINE Float4 abs4 (Float4 x)
{
    constexpr auto all = 0x7fffffff;
    return reinterpret_cast<Float4> (reinterpret_cast<Int4> (x) & Int4 { all, all, all, all });
}

/** Whether every lane of a comparison's result is true. */
ORVO_INLINE bool all4 (Int4 mask)
{
#if defined(__SSE2__)
    return _mm_movemask_ps (reinterpret_cast<__m128> (mask)) == 15;
#else
    return (mask[0] & mask[1] & mask[2] & mask[3]) != 0;
#endif
}

/** Rows become columns. */
ORVO_INLINE void transpose4 (Float4& a, Float4& b, Float4& c, Float4& d)
{
    const auto ab01 = __builtin_shufflevector (a, b, 0, 4, 1, 5);
    const auto cd01 = __builtin_shufflevector (c, d, 0, 4, 1, 5);
    const auto ab23 = __builtin_shufflevector (a, b, 2, 6, 3, 7);
    const auto cd23 = __builtin_shufflevector (c, d, 2, 6, 3, 7);

    a = __builtin_shufflevector (ab01, cd01, 0, 1, 4, 5);
    b = __builtin_shufflevector (ab01, cd01, 2, 3, 6, 7);
    c = __builtin_shufflevector (ab23, cd23, 0, 1, 4, 5);
    d = __builtin_shufflevector (ab23, cd23, 2, 3, 6, 7);
}
} // namespace
