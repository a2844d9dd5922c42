#include "core/PluginUnderTest.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

// What is no audio must not leave lasting damage: NaN, infinities, numbers whose sums overflow.

namespace
{
constexpr auto numBlocks = 24, blockLength = 256, damagedBlock = 3;
constexpr auto start = damagedBlock * blockLength;
constexpr auto multiBand = 1;

struct Damage
{
    const char* name;
    float sample;
};

const Damage damages[] {
    { "NaN", std::numeric_limits<float>::quiet_NaN() },
    { "infinity", std::numeric_limits<float>::infinity() },
    { "minus infinity", -std::numeric_limits<float>::infinity() },
    { "1e20", 1.0e20f },
    { "-3e38", -3.0e38f },
    { "a denormal", 1.0e-40f },
};

/** Every curve takes part. */
void clipHard (PluginUnderTest& plugin, int layout, int exponent)
{
    auto mode = 0;

    for (const auto& [id, name] : expected::sections)
        plugin.set ({ { "threshold_" + id, -6.0 }, { "shape_" + id, 0.5 }, { "mode_" + id, mode++ % 5 } });

    plugin.set ({ { "layout", layout }, { "oversampling", exponent }, { "in_gain", 3.0 } });
}

/** Parts of a buffer, without a copy. */
juce::AudioBuffer<float> first (juce::AudioBuffer<float>& buffer, int length)
{
    return { buffer.getArrayOfWritePointers(), buffer.getNumChannels(), length };
}

juce::AudioBuffer<float> rest (juce::AudioBuffer<float>& buffer, int from)
{
    return { buffer.getArrayOfWritePointers(), buffer.getNumChannels(), from, buffer.getNumSamples() - from };
}

class DamagedLayoutAndFactor : public testing::TestWithParam<std::tuple<int, int>>
{
};

INSTANTIATE_TEST_SUITE_P (SignalChainDamage, DamagedLayoutAndFactor,
                          testing::Combine (testing::Range (0, 4), testing::Values (0, 2, 4)));

TEST_P (DamagedLayoutAndFactor, ReturnToTheUndamagedOutput)
{
    const auto [layout, exponent] = GetParam();
    const auto hasMemory = exponent > 0 || layout == multiBand;

    for (const auto numChannels : { 1, 2 })
    {
        const auto signal = signals::noise (numChannels, numBlocks * blockLength);
        PluginUnderTest undamaged (numChannels, 22050.0, blockLength);
        clipHard (undamaged, layout, exponent);
        auto expectedOutput = undamaged.render (signal, { blockLength });

        for (const auto& damage : damages)
        {
            for (const auto position : { 0, 101, blockLength - 1 })
            {
                SCOPED_TRACE (testing::Message()
                              << damage.name << " at " << position << " of " << numChannels);
                PluginUnderTest plugin (numChannels, 22050.0, blockLength);
                clipHard (plugin, layout, exponent);
                plugin.processor.waveformTaps.setPoints (300);

                auto input = signal;
                input.setSample (position % numChannels, start + position, damage.sample);
                auto output = plugin.render (input, { blockLength });

                ASSERT_TRUE (isFinite (output));
                const auto& state = plugin.processor;
                for (const auto value : { state.shortTermDifference, state.peakDifference,
                                          state.inputMaxPeakDb, state.outputMaxPeakDb,
                                          state.inputLoudness.momentary, state.outputLoudness.integrated })
                    ASSERT_TRUE (std::isfinite (value));
                for (const auto value : plugin.readings())
                    ASSERT_TRUE (std::isfinite (value));
                EXPECT_LE (output.getMagnitude (0, output.getNumSamples()), 1.0f);

                // The crossover's memory of 1e20 has faded after 70 of its time constants of 31 samples.
                const auto recovered = start + (hasMemory ? 10 * blockLength : position + 1);
                EXPECT_LE (
                    signals::largestDifference (rest (output, recovered), rest (expectedOutput, recovered)),
                    hasMemory ? 1.0e-6 : 0.0);

                const auto untouched = start + (hasMemory ? 0 : position);
                EXPECT_EQ (
                    signals::largestDifference (first (output, untouched), first (expectedOutput, untouched)),
                    0.0);
            }
        }
    }
}

TEST (SignalChainDamage, LeavesNoLongBlock)
{
    for (const auto& damage : damages)
    {
        PluginUnderTest plugin (2, 48000.0, 2048);
        auto block = signals::noise (2, 2048);
        block.setSample (1, 10, damage.sample);
        plugin.process (block);
        EXPECT_TRUE (isFinite (block)) << damage.name;
    }
}

TEST (SignalChainDamage, IsForgottenByEveryReading)
{
    const auto hear = [] (PluginUnderTest& plugin, float sample, int position)
    {
        // Quiet at first; then until the graphs show nothing but what came after.
        auto signal = signals::noise (2, 6 * 8000 + 3 * blockLength);
        signal.applyGain (0, blockLength, 0.1f);
        for (auto channel : { 0, 1 })
            signal.setSample (channel, position, sample);

        plugin.processor.waveformTaps.setPoints (50);
        clipHard (plugin, multiBand, 0);
        plugin.render (signal, { blockLength });
    };

    PluginUnderTest undamaged (2, 8000.0, blockLength);
    hear (undamaged, 0.0f, 0);

    for (const auto& damage : damages)
    {
        for (const auto position : { 0, 101, blockLength - 1 })
        {
            SCOPED_TRACE (testing::Message() << damage.name << " at " << position);
            PluginUnderTest plugin (2, 8000.0, blockLength);
            hear (plugin, damage.sample, position);

            const auto isHuge = std::isfinite (damage.sample) && std::abs (damage.sample) > 1.0f;
            const auto readings = plugin.readings (! isHuge), expected = undamaged.readings (! isHuge);
            for (size_t i = 0; i < readings.size(); ++i)
                ASSERT_NEAR (readings[i], expected[i], 1.0e-4) << i;

            // Counted in tenths.
            for (const auto loudness :
                 { &OrvoAudioProcessor::inputLoudness, &OrvoAudioProcessor::outputLoudness })
                for (const auto reading :
                     { &kf::LUFSData::momentary, &kf::LUFSData::shortTerm, &kf::LUFSData::integrated,
                       &kf::LUFSData::rangeStart, &kf::LUFSData::rangeEnd })
                    ASSERT_NEAR (plugin.processor.*loudness.*reading, undamaged.processor.*loudness.*reading,
                                 0.11);
        }
    }
}
} // namespace
