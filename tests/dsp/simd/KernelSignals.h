#pragma once

#include "dsp/simd/KernelTable.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

#include <cstring>

namespace simd
{
/** For the tests' names in ctest. */
inline void PrintTo (InstructionSet set, std::ostream* stream)
{
    *stream << (set == InstructionSet::avx2 ? "avx2" : "baseline");
}
} // namespace simd

/** What every comparison of a kernel with its plain form runs through. */
namespace kernels
{
using signals::Buffer;

/** Selects an instruction set for as long as it lives. */
class Selection
{
public:
    explicit Selection (simd::InstructionSet set) { EXPECT_TRUE (simd::select (set)); }

    ~Selection() { simd::select (before); }

    Selection (const Selection&) = delete;
    Selection& operator= (const Selection&) = delete;

private:
    simd::InstructionSet before = simd::selected();
};

inline std::vector<simd::InstructionSet> supportedSets()
{
    std::vector<simd::InstructionSet> sets { simd::InstructionSet::baseline };

    if (simd::isSupported (simd::InstructionSet::avx2))
        sets.push_back (simd::InstructionSet::avx2);

    return sets;
}

/** Chords with their overtones, struck again and again and left to die away below 1e-8. */
inline Buffer music (int numChannels, int numSamples)
{
    auto buffer = signals::noise (numChannels, numSamples, 1.0e-3f, 3);

    for (auto i = 0; i < numSamples; ++i)
    {
        const auto sinceStruck = i % 3000;
        const auto decay = std::exp (-sinceStruck / 150.0);

        for (auto channel = 0; channel < numChannels; ++channel)
        {
            auto chord = 0.0;
            for (auto partial = 1; partial <= 6; ++partial)
                chord += std::sin (0.021 * partial * (1.0 + 0.26 * channel) * sinceStruck) / partial;
            buffer.setSample (
                channel, i,
                static_cast<float> (decay * (chord + static_cast<double> (buffer.getSample (channel, i)))));
        }
    }

    return buffer;
}

inline std::vector<std::pair<const char*, Buffer>> all (int numChannels, int numSamples)
{
    auto stops = signals::noise (numChannels, numSamples);
    stops.clear (numSamples / 3, numSamples / 2);

    return { { "noise", signals::noise (numChannels, numSamples, 1.5f) },
             { "music", music (numChannels, numSamples) },
             { "denormals", signals::noise (numChannels, numSamples, 1.0e-39f) },
             { "silence", signals::silence (numChannels, numSamples) },
             { "noise that stops", stops } };
}

/** Ways of cutting a stream into blocks of at most 512. */
inline const std::vector<std::vector<int>> cuts { { 512 }, { 1 }, { 7, 64, 0, 3, 511, 130 } };

inline bool areSameBits (const Buffer& a, const Buffer& b)
{
    for (auto channel = 0; channel < a.getNumChannels(); ++channel)
        if (std::memcmp (a.getReadPointer (channel), b.getReadPointer (channel),
                         sizeof (float) * static_cast<size_t> (a.getNumSamples()))
            != 0)
            return false;

    return a.getNumChannels() == b.getNumChannels() && a.getNumSamples() == b.getNumSamples();
}

/** Tests over instruction sets and numbers of channels. */
class SetAndWidth : public testing::TestWithParam<std::tuple<simd::InstructionSet, int>>
{
protected:
    int numChannels = std::get<1> (GetParam());

    /** Calls `body (signal, lengths)` for every signal and cut, with denormals and without. */
    template <typename Body>
    void forEachStream (int numSamples, Body&& body)
    {
        for (const auto& [name, signal] : all (numChannels, numSamples))
        {
            for (const auto& lengths : cuts)
            {
                for (const auto hasDenormals : { false, true })
                {
                    SCOPED_TRACE (testing::Message() << name << ", " << testing::PrintToString (lengths)
                                                     << ", denormals " << hasDenormals);
                    juce::FloatVectorOperations::disableDenormalisedNumberSupport (! hasDenormals);
                    body (signal, lengths);
                    juce::FloatVectorOperations::disableDenormalisedNumberSupport (false);
                }
            }
        }
    }

private:
    Selection selection { std::get<0> (GetParam()) };
};

inline auto setsAndWidths()
{
    return testing::Combine (testing::ValuesIn (supportedSets()), testing::Values (1, 2));
}
} // namespace kernels
