#include "Ratios.h"

#include "dsp/simd/KernelTable.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace bench
{

namespace
{
constexpr auto numTurns = 41;
constexpr auto samplesPerTurn = 24576;

/** In ns per sample of one turn. */
double timeOf (const Process& process, Feed& feed, int blockSize)
{
    using Clock = std::chrono::steady_clock;
    const auto numBlocks = std::max (1, samplesPerTurn / blockSize);
    const auto start = Clock::now();

    for (auto i = 0; i < numBlocks; ++i)
    {
        auto& block = feed.next();
        process (block);
        benchmark::ClobberMemory();
    }

    const std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / (static_cast<double> (numBlocks) * blockSize);
}

double medianOf (std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t> (values.size() / 2);
    std::nth_element (values.begin(), middle, values.end());
    return *middle;
}

} // namespace

double medianTimeOf (const Process& process, int blockSize, int turns)
{
    const juce::ScopedNoDenormals noDenormals;
    Feed feed (blockSize);
    std::vector<double> times;

    for (auto turn = 0; turn < turns; ++turn)
        times.push_back (timeOf (process, feed, blockSize));

    return medianOf (times);
}

namespace
{
/** Their times would mean nothing otherwise. */
void throwIfDifferent (const Pair& pair, const Form& plain, const Form& kernel)
{
    constexpr auto numBlocks = 20;
    constexpr auto tolerance = 1.0e-5f;
    Feed plainFeed (pair.blockSize), kernelFeed (pair.blockSize);

    for (auto n = 0; n < numBlocks; ++n)
    {
        auto &a = plainFeed.next(), &b = kernelFeed.next();
        plain.process (a);
        kernel.process (b);
        auto isSame = true;

        if (plain.reading)
        {
            const auto expected = plain.reading();
            isSame = std::abs (kernel.reading() - expected) <= 1.0e-3 * std::abs (expected);
        }

        for (auto channel = 0; channel < a.getNumChannels(); ++channel)
            for (auto i = 0; i < a.getNumSamples(); ++i)
                isSame &= std::abs (a.getSample (channel, i) - b.getSample (channel, i)) <= tolerance;

        if (! isSame)
            throw std::runtime_error (pair.name + ": the kernel and its plain form differ");
    }
}

void measure (const Pair& pair, const char* setName)
{
    const juce::ScopedNoDenormals noDenormals;
    const auto plain = pair.makePlain(), kernel = pair.makeKernel();
    throwIfDifferent (pair, plain, kernel);
    Feed plainFeed (pair.blockSize), kernelFeed (pair.blockSize);
    Feed copyFeed (pair.blockSize);
    std::vector<double> plainTimes, kernelTimes, ratios;

    for (auto turn = 0; turn < numTurns; ++turn)
    {
        // Both pay for the copy of the signal into the block, which is not theirs.
        const auto copy = timeOf ([] (auto&) {}, copyFeed, pair.blockSize);
        plainTimes.push_back (timeOf (plain.process, plainFeed, pair.blockSize) - copy);
        kernelTimes.push_back (timeOf (kernel.process, kernelFeed, pair.blockSize) - copy);
        ratios.push_back (plainTimes.back() / kernelTimes.back());
    }

    std::printf ("%-32s%-6s%12.2f%12.2f%10.1f\n", pair.name.c_str(), setName, medianOf (plainTimes),
                 medianOf (kernelTimes), medianOf (ratios));
    std::fflush (stdout);
}
} // namespace

void printRatios (const std::string& filter)
{
    using simd::InstructionSet;
    std::vector<Pair> pairs;
    addChainPairs (pairs);
    addCurvePairs (pairs);
    addOversamplerPairs (pairs);
    addSplitterPairs (pairs);
    addMeterPairs (pairs);
    addParameterPairs (pairs);

    std::printf ("%-32s%-6s%12s%12s%10s\n", "row", "set", "plain ns", "kernel ns", "ratio");
    const auto before = simd::selected();
#if defined(__aarch64__)
    constexpr auto* baseline = "NEON";
#else
    constexpr auto* baseline = "SSE2";
#endif

    for (const auto& pair : pairs)
    {
        if (pair.name.find (filter) == std::string::npos)
            continue;

        for (const auto& [set, name] :
             { std::pair { InstructionSet::avx2, "AVX2" }, { InstructionSet::baseline, baseline } })
            if (simd::select (set))
                measure (pair, name);
    }

    simd::select (before);
}

} // namespace bench
