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
    /** What the compiler assumes of every processor: SSE2 on x86. */
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

/** One function for each inner loop. */
struct Kernels
{
    /** Splits one channel, or two. Returns whether input and outputs stayed within plus and minus `limit`;
        false for what is no number. */
    bool (*split) (const SplitterCoefficients&, SplitterChannel*, size_t numChannels, ConstChannels input,
                   const SplitterOutputs&, size_t numSamples, float limit);
};

/** Of the selected set. Any thread. */
[[nodiscard]] const Kernels& kernels() noexcept;

/** Whether this processor runs the set. */
[[nodiscard]] bool isSupported (InstructionSet) noexcept;

/** The best set of the processor is selected when the module is loaded. Tests and benchmarks select another
    while no audio runs; an unsupported one is refused with false. */
bool select (InstructionSet) noexcept;
[[nodiscard]] InstructionSet selected() noexcept;
} // namespace simd
