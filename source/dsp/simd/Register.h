#pragma once

// Registers of floats as the compiler's vector types, with the few operations that these lack, each once for all
// widths. Everything has internal linkage and is always inlined; see KernelTable.h.

#if defined(__SSE2__)
    #include <immintrin.h>
#elif defined(__aarch64__)
    #include <arm_neon.h>
#endif

#include <stddef.h>

#define ORVO_INLINE [[maybe_unused, gnu::always_inline]] inline

/** The same for a lambda, between its parameters and its body. There, an attribute in brackets would belong to the
    function's type instead and be ignored; a macro's name is what formatters take in that place. */
#define ORVO_INLINE_LAMBDA __attribute__ ((always_inline))

namespace
{
/** As many lanes as a register of the instruction set has. */
#if defined(__AVX2__)
constexpr size_t width = 8;
#else
constexpr size_t width = 4;
#endif

using Float [[gnu::vector_size (4 * width)]] = float;
using Int [[gnu::vector_size (4 * width)]] = int;

/** Four lanes, whatever the instruction set. */
using Float4 [[gnu::vector_size (16)]] = float;
using Int4 [[gnu::vector_size (16)]] = int;

/** What comparing two of them gives: whole numbers with all bits set where it is true. */
template <typename Floats>
using MaskOf = decltype (Floats {} < Floats {});

template <typename Floats>
ORVO_INLINE MaskOf<Floats> asInt (Floats x)
{
    return reinterpret_cast<MaskOf<Floats>> (x);
}

template <typename Floats = Float>
ORVO_INLINE Floats asFloat (MaskOf<Floats> x)
{
    return reinterpret_cast<Floats> (x);
}

template <typename Floats = Float>
ORVO_INLINE Floats broadcast (float x)
{
    return x - Floats {};
}

/** The numbers, where asFloat() takes over the bits. */
template <typename Floats = Float>
ORVO_INLINE Floats toFloat (MaskOf<Floats> x)
{
    // Its versions differ in the blank before these parentheses.
    // clang-format off
    return __builtin_convertvector (x, Floats);
    // clang-format on
}

/** No load or store needs alignment. */
template <typename Floats = Float>
ORVO_INLINE Floats load (const float* source)
{
    Floats x;
    __builtin_memcpy (&x, source, sizeof (x));
    return x;
}

template <typename Floats>
ORVO_INLINE void store (float* target, Floats x)
{
    __builtin_memcpy (target, &x, sizeof (x));
}

/** The first `count` floats; the other lanes are 0. */
template <typename Floats = Float>
ORVO_INLINE Floats loadUpTo (const float* source, size_t count)
{
    Floats x {};
    __builtin_memcpy (&x, source, count * sizeof (float));
    return x;
}

template <typename Floats>
ORVO_INLINE void storeUpTo (float* target, Floats x, size_t count)
{
    __builtin_memcpy (target, &x, count * sizeof (float));
}

/** Calls `body (start, count)` for whole registers of `lanes`, and once for what is left. */
template <size_t lanes, typename Body>
ORVO_INLINE void forEach (size_t start, size_t end, Body body)
{
    for (; start + lanes <= end; start += lanes)
        body (start, lanes);

    if (start < end)
        body (start, end - start);
}

template <typename Floats>
ORVO_INLINE Floats abs (Floats x)
{
    return asFloat<Floats> (asInt (x) & 0x7fffffff);
}

/** Of `a` where the mask is set, of `b` elsewhere. */
template <typename Floats>
ORVO_INLINE Floats select (MaskOf<Floats> mask, Floats a, Floats b)
{
    return asFloat<Floats> ((asInt (a) & mask) | (asInt (b) & ~mask));
}

/** Whether a comparison was true in any lane, or in every one. */
template <typename Mask>
ORVO_INLINE bool any (Mask mask)
{
#if defined(__SSE2__)
    #if defined(__AVX2__)
    if constexpr (sizeof (mask) == sizeof (__m256))
        return _mm256_movemask_ps (reinterpret_cast<__m256> (mask)) != 0;
    else
    #endif
        return _mm_movemask_ps (reinterpret_cast<__m128> (mask)) != 0;
#elif defined(__aarch64__)
    return vmaxvq_u32 (reinterpret_cast<uint32x4_t> (mask)) != 0;
#else
    return (mask[0] | mask[1] | mask[2] | mask[3]) != 0;
#endif
}

template <typename Mask>
ORVO_INLINE bool all (Mask mask)
{
    return ! any (~mask);
}

// ARM's own minimum and maximum give what is no number whichever operand it is, and know which zero is smaller. So there
// they are a comparison and a choice, as those of x86 are, which only a denormal can tell from them while denormals are
// off: chosen, it stays.

/** The smaller one in each lane; `b` if either is no number, or both are zeros. */
template <typename Floats>
ORVO_INLINE Floats min (Floats a, Floats b)
{
#if defined(__AVX2__)
    if constexpr (sizeof (a) == sizeof (__m256))
        return _mm256_min_ps (a, b);
#endif
#if defined(__SSE2__)
    if constexpr (sizeof (a) == sizeof (__m128))
        return _mm_min_ps (a, b);
#endif
    return select (a < b, a, b);
}

/** The larger one in each lane; `b` if either is no number, or both are zeros. */
template <typename Floats>
ORVO_INLINE Floats max (Floats a, Floats b)
{
#if defined(__AVX2__)
    if constexpr (sizeof (a) == sizeof (__m256))
        return _mm256_max_ps (a, b);
#endif
#if defined(__SSE2__)
    if constexpr (sizeof (a) == sizeof (__m128))
        return _mm_max_ps (a, b);
#endif
    return select (a > b, a, b);
}

/** x, or the limit that it lies beyond; `lower` is not above `upper`. What is no number stays, and a denormal does not while
    denormals are off. */
ORVO_INLINE Float clamp (Float x, Float lower, Float upper)
{
#if defined(__aarch64__)
    return vmaxq_f32 (lower, vminq_f32 (upper, x));
#else
    return max (lower, min (upper, x));
#endif
}

/** a b + c, rounded once where the processor can. */
ORVO_INLINE Float multiplyAdd (Float a, Float b, Float c)
{
#if defined(__AVX2__) && defined(__FMA__)
    return _mm256_fmadd_ps (a, b, c);
#elif defined(__aarch64__)
    return vfmaq_f32 (c, a, b);
#else
    return a * b + c;
#endif
}

/** Lanes of two registers in an order that follows from the lane's number. */
template <size_t... lane>
struct Shuffles
{
    /** In turn: of the lower halves, or of the upper ones. */
    ORVO_INLINE static Float interleaveLow (Float a, Float b)
    {
        return __builtin_shufflevector (a, b, (lane / 2 + lane % 2 * width)...);
    }

    ORVO_INLINE static Float interleaveHigh (Float a, Float b)
    {
        return __builtin_shufflevector (a, b, ((lane + width) / 2 + lane % 2 * width)...);
    }

    /** Every other one of two registers in a row, from the first one on, or from the second. */
    ORVO_INLINE static Float even (Float a, Float b) { return __builtin_shufflevector (a, b, (2 * lane)...); }

    ORVO_INLINE static Float odd (Float a, Float b)
    {
        return __builtin_shufflevector (a, b, (2 * lane + 1)...);
    }
};

#if defined(__AVX2__)
using Lanes = Shuffles<0, 1, 2, 3, 4, 5, 6, 7>;
#else
using Lanes = Shuffles<0, 1, 2, 3>;
#endif

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
