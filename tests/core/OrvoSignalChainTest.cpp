#include "core/PluginUnderTest.h"
#include "core/ReferenceChain.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace
{
using expected::Values;

constexpr auto numLayouts = 4;
constexpr auto numModes = 5;
constexpr auto multiBand = 1;

/** Settings for every section, "post" included: modes one apart from section to section, the rest by chance.
    */
Values randomValues (int layout, int mode, int seed)
{
    juce::Random random (1000 * seed + mode);
    const auto between = [&] (double low, double high) { return low + (high - low) * random.nextDouble(); };
    auto values = expected::defaults();

    for (const auto& [id, name] : expected::sections)
    {
        values["threshold_" + id] = between (-18.0, -0.5);
        values["shape_" + id] = between (0.0, 1.0);
        values["mode_" + id] = mode++ % numModes;
        values["gain_" + id] = between (-12.0, 3.0);
        values["enable_" + id] = random.nextInt (8) > 0 ? 1.0 : 0.0;
        values["link_" + id] = values["threshold_" + id] > -6.0 ? 1.0 : 0.0;
    }

    values["layout"] = layout;
    values["crossover_low"] = between (60.0, 1000.0);
    values["crossover_high"] = between (2000.0, 10000.0);
    values["in_gain"] = random.nextInt ({ -6, 10 }) + between (-0.4, 0.4);
    return values;
}

/** Single precision costs more behind the crossover and the oversampler. */
double tolerance (const Values& values)
{
    const auto isFiltered =
        static_cast<int> (values.at ("layout")) == multiBand || values.at ("oversampling") > 0.0;
    return isFiltered ? 1.0e-5 : 2.0e-6;
}

/** The values as the plug-in holds them: single precision, by way of the host's 0 to 1. */
Values held (PluginUnderTest& plugin, Values values)
{
    for (auto& [id, value] : values)
    {
        EXPECT_NEAR (plugin.get (id), value, 1.0e-6 * std::max (10.0, value)) << id;
        value = plugin.get (id);
    }

    return values;
}

void expectReference (PluginUnderTest& plugin, const Values& values, int numChannels, double sampleRate,
                      int numSamples, const std::vector<int>& lengths = { 512 })
{
    const auto signal = signals::noise (numChannels, numSamples, 1.2f);
    plugin.set (values);
    const auto output = plugin.render (signal, lengths);
    const auto expectedOutput = reference::process (held (plugin, values), sampleRate, signal);

    EXPECT_LE (signals::largestDifference (output, expectedOutput), tolerance (values));
    EXPECT_GT (output.getMagnitude (0, numSamples), 0.0f) << "silence proves nothing";
}

//======================================================================================================================

class LayoutAndWidth : public testing::TestWithParam<std::tuple<int, int>>
{
};

INSTANTIATE_TEST_SUITE_P (SignalChain, LayoutAndWidth,
                          testing::Combine (testing::Range (0, numLayouts), testing::Values (1, 2)));

TEST_P (LayoutAndWidth, EqualTheReferenceForEveryModeAndSetting)
{
    const auto [layout, numChannels] = GetParam();
    PluginUnderTest plugin (numChannels);

    // Settings act in one step between two blocks, so one plug-in can take them all without a pause; only the
    // crossover has a memory.
    for (auto mode = 0; mode < numModes; ++mode)
    {
        for (auto seed = 1; seed <= 6; ++seed)
        {
            SCOPED_TRACE (testing::Message() << "mode " << mode << ", seed " << seed);

            if (layout == multiBand)
                plugin.prepare (numChannels, 48000.0, 512);

            expectReference (plugin, randomValues (layout, mode, seed), numChannels, 48000.0, 4000);
        }
    }
}

TEST_P (LayoutAndWidth, EqualTheReferenceBehindEveryOversampler)
{
    const auto [layout, numChannels] = GetParam();

    for (auto exponent = 1; exponent <= 4; ++exponent)
    {
        for (auto mode = 0; mode < numModes; ++mode)
        {
            SCOPED_TRACE (testing::Message() << (1 << exponent) << "x, mode " << mode);
            const auto values =
                expected::with (randomValues (layout, mode, 7), { { "oversampling", exponent } });
            PluginUnderTest plugin (numChannels);
            expectReference (plugin, values, numChannels, 48000.0, 1500);
        }
    }
}

TEST_P (LayoutAndWidth, DoNotDependOnHowTheStreamIsCut)
{
    const auto [layout, numChannels] = GetParam();
    const auto signal = signals::noise (numChannels, 6000);

    // At the end of each block JUCE's crossover filter sets states within 1e-8 of zero to zero.
    const auto allowed = layout == multiBand ? 2.0e-6 : 0.0;

    for (auto exponent = 0; exponent <= 4; ++exponent)
    {
        const auto values = expected::with (randomValues (layout, 1, 3), { { "oversampling", exponent } });
        PluginUnderTest whole (numChannels);
        whole.processor.waveformTaps.setPoints (300);
        whole.set (values);
        const auto output = whole.render (signal);

        // The last are longer than announced.
        for (const std::vector<int>& lengths : std::vector<std::vector<int>> {
                 { 1 }, { 7 }, { 64 }, { 0, 3, 512, 1, 0, 200 }, { 513, 4000, 0, 1 }, { 6000 } })
        {
            SCOPED_TRACE (testing::Message() << (1 << exponent) << "x, " << testing::PrintToString (lengths));
            PluginUnderTest cut (numChannels);
            cut.processor.waveformTaps.setPoints (300);
            cut.set (values);

            EXPECT_LE (signals::largestDifference (cut.render (signal, lengths), output), allowed);
            EXPECT_NEAR (cut.processor.outputLoudness.momentary, whole.processor.outputLoudness.momentary,
                         10.0 * allowed);

            // An envelope is put together from segments.
            const auto readings = cut.readings(), expectedReadings = whole.readings();
            for (size_t i = 0; i < readings.size(); ++i)
                ASSERT_NEAR (readings[i], expectedReadings[i], 1.0e-4) << i;
        }
    }
}

//======================================================================================================================

TEST (SignalChain, RunsAgainAtAnotherRateSizeOrWidth)
{
    PluginUnderTest plugin;
    const auto common = expected::with (randomValues (0, 1, 5), { { "crossover_high", 2500.0 } });

    struct Setup
    {
        double sampleRate;
        int blockSize, numChannels, layout, exponent;
    };

    for (const auto& [sampleRate, blockSize, numChannels, layout, exponent] :
         { Setup { 8000.0, 64, 1, multiBand, 0 }, Setup { 192000.0, 1024, 2, multiBand, 0 },
           Setup { 44100.0, 1, 2, 2, 2 }, Setup { 11025.0, 4096, 1, 3, 1 }, Setup { 44101.0, 333, 2, 2, 0 },
           Setup { 96000.0, 512, 2, multiBand, 4 }, Setup { 96000.0, 512, 1, 0, 3 },
           Setup { 48000.0, 0, 2, multiBand, 1 } })
    {
        SCOPED_TRACE (sampleRate);
        plugin.prepare (numChannels, sampleRate, blockSize);
        const auto values = expected::with (common, { { "layout", layout }, { "oversampling", exponent } });
        expectReference (plugin, values, numChannels, sampleRate, 3000, { blockSize > 0 ? blockSize : 64 });
    }
}

TEST (SignalChain, TakesEachCrossoverWithoutTheOther)
{
    for (const auto& [id, value] : { std::pair { "crossover_low", 700.0 }, { "crossover_high", 9000.0 } })
    {
        SCOPED_TRACE (id);
        const auto common = randomValues (multiBand, 0, 9);
        PluginUnderTest plugin;
        plugin.set (common);
        plugin.set (id, value);
        expectReference (plugin, expected::with (common, { { id, value } }), 2, 48000.0, 2000);
    }
}

TEST (SignalChain, StaysStableWithACrossoverAboveHalfTheRate)
{
    const auto tone = signals::sine (2, 16000, 500.0, 8000.0, signals::toGain (-20.0));

    // A bilinear transform of 6 kHz has a negative coefficient at this rate; that of 10 kHz is 2 kHz's.
    for (const auto crossover : { 6000.0, 10000.0 })
    {
        PluginUnderTest plugin (2, 8000.0);
        plugin.set ({ { "layout", multiBand }, { "crossover_high", crossover } });
        const auto output = plugin.render (tone);

        ASSERT_TRUE (isFinite (output)) << crossover;
        EXPECT_LT (signals::toDb (static_cast<double> (output.getMagnitude (0, 16000))), -15.0) << crossover;
        EXPECT_GT (output.getMagnitude (15000, 1000), 0.05f) << crossover;
    }
}

TEST (SignalChain, KeepsWhatWasThereForAParameterValueThatIsNoNumber)
{
    PluginUnderTest plugin, untouched;
    const auto signal = signals::noise (2, 1024);
    constexpr auto nan = std::numeric_limits<float>::quiet_NaN();

    for (auto* each : { &plugin, &untouched })
    {
        each->set (randomValues (multiBand, 1, 2));
        each->set ({ { "oversampling", 1 }, { "enable", 1 } });
    }

    for (const auto& [id, value] : expected::defaults())
    {
        auto& parameter = plugin.parameter (id);
        const auto raw = plugin.get (id);
        std::vector<float> refused { nan, -nan };

        // As hosts do with what is typed.
        for (const auto* text : { "nan", "-NaN", "inf", "-Inf", "nandB" })
            refused.push_back (parameter.getValueForText (text));

        for (const auto host : refused)
        {
            parameter.setValueNotifyingHost (host);
            parameter.setValue (host);
            ASSERT_EQ (plugin.get (id), raw) << id;
            ASSERT_EQ (parameter.convertFrom0to1 (parameter.getValue()), static_cast<float> (raw)) << id;
        }

        // The next change of another parameter takes all values anew.
        for (auto* each : { &plugin, &untouched })
            each->set ("shape_single", 0.3 + 0.001 * static_cast<double> (id.length()));

        ASSERT_EQ (signals::largestDifference (plugin.render (signal), untouched.render (signal)), 0.0) << id;
    }

    EXPECT_EQ (plugin.processor.getLatencySamples(), untouched.processor.getLatencySamples());
    EXPECT_FLOAT_EQ (plugin.parameter ("gain_post").getValueForText ("1e9"), 1.0f)
        << "beyond the end is its end";
}

TEST (SignalChain, FollowsTheRulesOfRouting)
{
    constexpr auto quarter = 0.251188643150958; // -12 dB

    struct Case
    {
        const char* rule;
        Values values;

        /** Of a signal far above all thresholds; 0: not known in advance. */
        double peak = 0.0;
        int numChannels = 2;
    };

    const std::vector<Case> cases {
        { "a gain of 4.5 dB is 4", { { "in_gain", 4.5 } } },
        { "of 13.5 dB 14", { { "in_gain", 13.5 } } },
        { "of -4.5 dB -4", { { "in_gain", -4.5 } } },
        { "of -13.5 dB -14", { { "in_gain", -13.5 } } },
        { "solo", { { "layout", 1 }, { "solo_band", 1 } } },
        { "solo beats mute", { { "layout", 1 }, { "solo_band", 0 }, { "mute_low_band", 1 } } },
        { "one mute", { { "layout", 1 }, { "mute_mid_band", 1 } } },
        { "two mutes", { { "layout", 1 }, { "mute_low_band", 1 }, { "mute_high_band", 1 } } },
        { "all muted pass",
          { { "layout", 1 }, { "mute_low_band", 1 }, { "mute_mid_band", 1 }, { "mute_high_band", 1 } } },
        { "a mute at 0.5 is none", { { "layout", 1 }, { "mute_low_band", 0.5 } } },
        { "solo at 1.5 is the high band", { { "layout", 1 }, { "solo_band", 1.5 } } },
        { "no mutes or solo elsewhere",
          { { "mute_single", 1 }, { "mute_post", 1 }, { "solo_band", 0 } },
          1.0 },
        { "mid and side", { { "layout", 2 }, { "threshold_high_channel", -12 } }, 1.0 },
        { "mid, side on mono", { { "layout", 2 }, { "threshold_mid_channel", -12 } }, 1.0, 1 },
        { "left and right", { { "layout", 3 }, { "threshold_left_channel", -12 } }, 1.0 },
        { "left, then right on mono", { { "layout", 3 }, { "threshold_right_channel", -12 } }, quarter, 1 },
        { "and left first", { { "layout", 3 }, { "threshold_left_channel", -12 } }, quarter, 1 },
        { "an off section's makeup", { { "enable_single", 0 }, { "gain_single", -12 } }, 1.0 },
        { "a makeup alone", { { "gain_single", -12 } }, quarter },
        { "a linked makeup",
          { { "threshold_single", -12 }, { "link_single", 1 }, { "gain_single", -18 } },
          1.0 },
        { "other layouts' sections", { { "threshold_low_band", -18 }, { "gain_left_channel", -18 } }, 1.0 },
        { "a mode of 2.5 is Soft II", { { "mode_single", 2.5 }, { "threshold_single", -12 } }, quarter },
        { "the ceiling", { { "threshold_post", -6 }, { "gain_post", -6 } }, quarter },
        { "a ceiling above full scale", { { "threshold_post", -6 }, { "gain_post", 10 } }, 1.0 },
        { "a linked ceiling", { { "threshold_post", -12 }, { "link_post", 1 } }, 1.0 },
        { "the ceiling without post", { { "enable_post", 0 }, { "threshold_post", -12 } }, 1.0 },
    };

    const auto loud = expected::with (expected::defaults(), { { "in_gain", 18.0 } });

    for (const auto& [rule, changes, peak, numChannels] : cases)
    {
        SCOPED_TRACE (rule);
        const auto values = expected::with (loud, changes);
        PluginUnderTest plugin (numChannels);
        expectReference (plugin, values, numChannels, 48000.0, 4000);

        if (peak > 0.0)
        {
            const auto output = plugin.render (signals::noise (numChannels, 4000));
            EXPECT_NEAR (output.getMagnitude (0, 4000), peak, 2.0e-6);
        }
    }
}

TEST (SignalChain, KeepsTheCrossoversMemoryWhileOtherLayoutsRun)
{
    auto before = signals::noise (2, 700), after = signals::noise (2, 700, 1.0f, 2);

    for (const auto detour : { 0.0, 2.0, 3.0 })
    {
        PluginUnderTest plugin, direct, fresh;

        for (auto* each : { &plugin, &direct, &fresh })
            each->set (randomValues (multiBand, 1, 4));

        plugin.render (before);
        direct.render (before);
        plugin.set ("layout", detour);
        plugin.render (signals::noise (2, 900, 1.0f, 3));
        plugin.set ("layout", multiBand);

        const auto expectedOutput = direct.render (after);
        EXPECT_EQ (signals::largestDifference (plugin.render (after), expectedOutput), 0.0) << detour;
        EXPECT_GT (signals::largestDifference (fresh.render (after), expectedOutput), 0.001);
    }
}

TEST (SignalChain, LeavesTheBufferBitForBitWhenOff)
{
    auto signal = signals::noise (2, 300, 3.0f);
    const juce::uint32 oddities[] { 0x7fc12345, 0xff800001, 0x7f800000, 0x00000001, 0x80000000 };
    std::memcpy (signal.getWritePointer (1, 100), oddities, sizeof (oddities));

    PluginUnderTest plugin;
    plugin.set (randomValues (multiBand, 1, 1));
    plugin.set ("oversampling", 2);
    plugin.render (signals::noise (2, 48000));
    auto& processor = plugin.processor;
    const auto latency = processor.getLatencySamples();
    const auto loudness = processor.inputLoudness;
    const auto level = processor.levels.input.left.getData();
    const auto history = processor.spectrum.writeIndex;

    for (const auto off : { 0.0, 0.4, 0.5 })
    {
        plugin.set ("enable", off);
        const auto output = plugin.render (signal, { 64 });

        for (auto channel = 0; channel < 2; ++channel)
            EXPECT_EQ (
                std::memcmp (output.getReadPointer (channel), signal.getReadPointer (channel), 300 * 4), 0);
    }

    EXPECT_EQ (processor.getLatencySamples(), latency);
    EXPECT_EQ (std::memcmp (&processor.inputLoudness, &loudness, sizeof (float) * 8), 0);
    EXPECT_EQ (processor.levels.input.left.getData().peak, level.peak);
    EXPECT_EQ (processor.spectrum.writeIndex, history);

    plugin.set ("enable", 0.6);
    EXPECT_NE (plugin.render (signals::noise (2, 300)).getSample (0, 299),
               signals::noise (2, 300).getSample (0, 299));
}

TEST (SignalChain, LeavesTheBufferAloneBeforeItIsPrepared)
{
    OrvoAudioProcessor processor;
    juce::MidiBuffer midi;
    const auto signal = signals::noise (2, 700, 2.0f);
    auto buffer = signal;

    processor.processBlock (buffer, midi);
    processor.processBlockBypassed (buffer, midi);
    processor.parameters.getParameter ("oversampling")->setValueNotifyingHost (1.0f);
    processor.processBlock (buffer, midi);

    EXPECT_EQ (signals::largestDifference (buffer, signal), 0.0);
}
} // namespace
