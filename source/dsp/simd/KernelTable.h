#pragma once

#include <stddef.h>

/** The inner loops of the engine, once for each instruction set.

    This header is also read by the files that are compiled for one instruction set alone. It therefore holds
    plain data and declarations only: an inline function or a template would be emitted there as a weak symbol,
    and the linker might then pick the copy that not every processor can run.

    No kernel allocates, locks or keeps anything outside its arguments.
*/
namespace simd
{
enum class InstructionSet
{
    /** What the compiler assumes of every processor: SSE2 on x86; on 64-bit ARM the registers of 128 bits, with FMA. */
    baseline,

    /** With FMA. */
    avx2
};

/** The two integrators of one second-order section. */
struct Integrators
{
    float s1;
    float s2;
};

/** What the crossover remembers of one channel. Low-pass and high-pass of one frequency start with the same
    section, so each frequency has three: the shared one, and the second of either branch. */
struct SplitterChannel
{
    Integrators lowShared, lowSecond, restSecond;
    Integrators phase, highShared, midSecond, highSecond;
};

/** Of both crossover frequencies: g = tan (pi f / rate), h = 1 / (1 + R2 g + g^2); R2 is the root of two. */
struct SplitterCoefficients
{
    float gLow, hLow;
    float gHigh, hHigh;
    float r2;
};

/** The channels' samples of one signal. */
using Channels = float* const*;
using ConstChannels = const float* const*;

struct SplitterOutputs
{
    Channels low, rest, mid, high;
};

/** A linear-phase half-band filter: every other coefficient is zero but the one in the middle. */
struct HalfBand
{
    /** Every other coefficient of the first half; the second half mirrors it. */
    const float* taps;
    size_t numTaps;

    /** The coefficient in the middle. */
    float centre;
};

/** Samples at the lower rate that a half-band kernel works on at a time. */
inline constexpr size_t halfBandChunk = 256;

/** What the lines of a half-band filter hold before the samples of a chunk. A line has room for that, a chunk
    and `halfBandPadding`; only the part before the chunk is state. */
inline constexpr size_t halfBandPadding = 64;

/** y = b0 w + b1 w' + b2 w'' with w = x - a1 w' - a2 w''. */
struct Biquad
{
    double b0, b1, b2, a1, a2;
};

/** What a biquad remembers of two channels. */
struct BiquadState
{
    double z1[2], z2[2];
};

/** The two filters of the loudness measurement; outputs within `quietest` of zero become zero. */
struct Weighting
{
    Biquad first, second;
    BiquadState firstState, secondState;
    double quietest;
};

/** Two channels of level tracking; see LevelChannel. */
struct LevelLanes
{
    float peakLevel[2], peakCoefficient[2], maxPeak[2];
    float rmsSum[2], maxRmsSum[2];

    /** The largest magnitude; written only. */
    float largest[2];
};

/** A limiter of the level with a quadratic knee; levels are linear magnitudes. */
struct KneeCurve
{
    /** Nothing changes up to `start`, and from `end` on the magnitude is `threshold`. */
    float start, end, threshold;

    float inverseStart;

    /** The gain between is 2^(-curvature d^2), d being the level above `start` in octaves. */
    float curvature;
};

/** |a - a^exponent / exponent| times both gains, a being the magnitude relative to the limit. */
struct PowerCurve
{
    /** From here on the output is `limitOutput`. */
    float limit, limitOutput;

    float inverseLimit, exponent, inverseExponent;
    float firstGain, secondGain;

    /** Relative magnitudes up to here are too small for the power to change a bit. */
    float negligible;
};

/** With a as the magnitude relative to the threshold: a polynomial of fourth order up to 1, then a parabola that
    falls to 0 at `limit`. */
struct LiftCurve
{
    float threshold, limit, inverseSpan;

    /** Of a, a^2, a^3 and a^4. */
    float coefficients[4];
};

/** One function for each inner loop. FillKernelTable.h fills a table, once for each instruction set. */
struct KernelTable
{
    /** Splits one channel, or two. Returns whether input and outputs stayed within plus and minus `limit`;
        false for what is no number. */
    bool (*split) (const SplitterCoefficients&, SplitterChannel*, size_t numChannels, ConstChannels input,
                   const SplitterOutputs&, size_t numSamples, float limit);

    /** One channel up by two. `line` holds 2 numTaps - 1 past inputs, twice as large. */
    void (*halfBandUp) (const HalfBand&, float* line, const float* input, float* output, size_t numInputs);

    /** One channel down by two. `evenLine` holds 2 numTaps - 1 past even inputs, `oddLine` numTaps past odd
        ones. */
    void (*halfBandDown) (const HalfBand&, float* evenLine, float* oddLine, const float* input, float* output,
                          size_t numOutputs);

    /** Whether every sample lies within plus and minus `limit`; false for what is no number. */
    bool (*isWithin) (const float* samples, size_t numSamples, float limit);

    /** Adds the squares of two weighted channels to their sums. If `squares` is not null, writes them there too
        and returns whether all are finite. */
    bool (*weighAndSquare) (Weighting&, ConstChannels input, Channels squares, double* sums,
                            size_t numSamples);

    /** Two channels through the peak and RMS of LevelChannel. `squares` points at the oldest ones, which are
        replaced. */
    void (*trackLevels) (LevelLanes&, ConstChannels input, Channels squares, size_t numSamples);

    /** The curves, in place. What a sample becomes does not depend on its neighbours. What is no number stays
        so; an infinite sample is a very loud one. */
    void (*hardClip) (float threshold, float* samples, size_t numSamples);
    void (*kneeClip) (const KneeCurve&, float* samples, size_t numSamples);
    void (*powerClip) (const PowerCurve&, float* samples, size_t numSamples);
    void (*lift) (const LiftCurve&, float* samples, size_t numSamples);

    /** The peak envelope behind the samples: instant attack, `release` per sample. Samples that are no numbers
        count as silence. `right` may be `left`. */
    float (*envelope) (float level, float release, const float* left, const float* right, size_t numSamples);
};

extern const KernelTable baselineKernels;

#ifdef ORVO_HAS_AVX2_KERNELS
extern const KernelTable avx2Kernels;
#endif

/** Of the selected set. Any thread. */
[[nodiscard]] const KernelTable& kernels() noexcept;

/** Whether this processor runs the set. */
[[nodiscard]] bool isSupported (InstructionSet) noexcept;

/** The best set of the processor is selected when the module is loaded. Tests and benchmarks select another
    while no audio runs; an unsupported one is refused with false. */
bool select (InstructionSet) noexcept;
[[nodiscard]] InstructionSet selected() noexcept;
} // namespace simd
