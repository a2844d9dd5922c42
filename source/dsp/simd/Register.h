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

ORVO_INLINE Float4 max4 (Float4 a, Float4 b)
{
#if defined(__SSE2__)
    return _mm_max_ps (a, b);
#else
    const auto mask = a > b;
    return reinterpret_cast<Float4> ((reinterpret_cast<Int4> (a) & mask)
                                     | (reinterpret_cast<Int4> (b) & ~mask));
#endif
}

/** Two doubles, from the first two lanes and back to them. */
using Double2 [[gnu::vector_size (16)]] = double;
using Long2 [[gnu::vector_size (16)]] = long long;

ORVO_INLINE Double2 toDoubles (Float4 x)
{
#if defined(__SSE2__)
    return _mm_cvtps_pd (x);
#else
    return Double2 { x[0], x[1] };
#endif
}

ORVO_INLINE Float4 toFloats (Double2 x)
{
#if defined(__SSE2__)
    return _mm_cvtpd_ps (x);
#else
    return Float4 { static_cast<float> (x[0]), static_cast<float> (x[1]), 0.0f, 0.0f };
#endif
}

/** Calls `body (start, count)` for whole registers of 4, and once for what is left. */
template <typename Body>
ORVO_INLINE void forEach4 (size_t start, size_t end, Body body)
{
    for (; start + 4 <= end; start += 4)
        body (start, 4);

    if (start < end)
        body (start, end - start);
}

/** As many lanes as a register of the instruction set has. */
#if defined(__AVX2__)
constexpr size_t width = 8;
#else
constexpr size_t width = 4;
#endif

using Float [[gnu::vector_size (4 * width)]] = float;
using Int [[gnu::vector_size (4 * width)]] = int;

ORVO_INLINE Float broadcast (float x)
{
    return x - Float {};
}

ORVO_INLINE Float load (const float* source)
{
    Float x;
    __builtin_memcpy (&x, source, sizeof (x));
    return x;
}

ORVO_INLINE void store (float* target, Float x)
{
    __builtin_memcpy (target, &x, sizeof (x));
}

ORVO_INLINE Float loadUpTo (const float* source, size_t count)
{
    Float x {};
    __builtin_memcpy (&x, source, count * sizeof (float));
    return x;
}

ORVO_INLINE void storeUpTo (float* target, Float x, size_t count)
{
    __builtin_memcpy (target, &x, count * sizeof (float));
}

ORVO_INLINE Int asInt (Float x)
{
    return reinterpret_cast<Int> (x);
}

ORVO_INLINE Float asFloat (Int x)
{
    return reinterpret_cast<Float> (x);
}

ORVO_INLINE Int broadcastInt (int x)
{
    return x - Int {};
}

ORVO_INLINE Float abs (Float x)
{
    return asFloat (asInt (x) & broadcastInt (0x7fffffff));
}

/** Of `a` where the mask is set, of `b` elsewhere. */
ORVO_INLINE Float select (Int mask, Float a, Float b)
{
    return asFloat ((asInt (a) & mask) | (asInt (b) & ~mask));
}

/** Whether a comparison was true in any lane, or in every one. */
ORVO_INLINE bool any (Int mask)
{
#if defined(__AVX2__)
    return _mm256_movemask_ps (reinterpret_cast<__m256> (mask)) != 0;
#elif defined(__SSE2__)
    return _mm_movemask_ps (reinterpret_cast<__m128> (mask)) != 0;
#else
    return (mask[0] | mask[1] | mask[2] | mask[3]) != 0;
#endif
}

ORVO_INLINE bool all (Int mask)
{
    return ! any (~mask);
}

/** The smaller one in each lane; `b` if either is no number. */
ORVO_INLINE Float min (Float a, Float b)
{
#if defined(__AVX2__)
    return _mm256_min_ps (a, b);
#elif defined(__SSE2__)
    return _mm_min_ps (a, b);
#else
    return select (a < b, a, b);
#endif
}

/** The larger one in each lane; `b` if either is no number. */
ORVO_INLINE Float max (Float a, Float b)
{
#if defined(__AVX2__)
    return _mm256_max_ps (a, b);
#elif defined(__SSE2__)
    return _mm_max_ps (a, b);
#else
    return select (a > b, a, b);
#endif
}

/** a b + c, rounded once where the processor can. */
ORVO_INLINE Float multiplyAdd (Float a, Float b, Float c)
{
#if defined(__AVX2__) && defined(__FMA__)
    return _mm256_fmadd_ps (a, b, c);
#else
    return a * b + c;
#endif
}

/** Lanes of two registers in turn: the lower halves, or the upper ones. */
ORVO_INLINE Float interleaveLow (Float a, Float b)
{
#if defined(__AVX2__)
    return __builtin_shufflevector (a, b, 0, 8, 1, 9, 2, 10, 3, 11);
#else
    return __builtin_shufflevector (a, b, 0, 4, 1, 5);
#endif
}

ORVO_INLINE Float interleaveHigh (Float a, Float b)
{
#if defined(__AVX2__)
    return __builtin_shufflevector (a, b, 4, 12, 5, 13, 6, 14, 7, 15);
#else
    return __builtin_shufflevector (a, b, 2, 6, 3, 7);
#endif
}

/** Every other lane of two registers in a row, from the first one on, or from the second. */
ORVO_INLINE Float evenLanes (Float a, Float b)
{
#if defined(__AVX2__)
    return __builtin_shufflevector (a, b, 0, 2, 4, 6, 8, 10, 12, 14);
#else
    return __builtin_shufflevector (a, b, 0, 2, 4, 6);
#endif
}

ORVO_INLINE Float oddLanes (Float a, Float b)
{
#if defined(__AVX2__)
    return __builtin_shufflevector (a, b, 1, 3, 5, 7, 9, 11, 13, 15);
#else
    return __builtin_shufflevector (a, b, 1, 3, 5, 7);
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
