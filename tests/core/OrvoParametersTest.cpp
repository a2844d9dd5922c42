#include "core/PluginUnderTest.h"
#include "dsp/ReferenceChain.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace
{
TEST (OrvoParameters, ReachTheSectionsThatTheyAreNamedAfter)
{
    for (auto layout = 0; layout < 4; ++layout)
    {
        PluginUnderTest plugin;

        for (auto seed = 1; seed <= 12; ++seed)
        {
            SCOPED_TRACE (testing::Message() << "layout " << layout << ", seed " << seed);
            plugin.prepare (2, 48000.0, 512);
            reference::expectReference (plugin, reference::randomValues (layout, seed), 2, 48000.0, 2000);
        }
    }
}

TEST (OrvoParameters, ActAsTheyAreReadAndByThemselves)
{
    constexpr auto quarter = 0.251188643150958; // -12 dB

    struct Case
    {
        const char* rule;
        expected::Values values;

        /** Of a signal far above all thresholds; 0: not known in advance. */
        double peak = 0.0;
    };

    const std::vector<Case> cases {
        { "a gain of 4.5 dB is 4", { { "in_gain", 4.5 } } },
        { "of 13.5 dB 14", { { "in_gain", 13.5 } } },
        { "of -4.5 dB -4", { { "in_gain", -4.5 } } },
        { "of -13.5 dB -14", { { "in_gain", -13.5 } } },
        { "a mute at 0.5 is none", { { "layout", 1 }, { "mute_low_band", 0.5 } } },
        { "solo at 1.5 is the high band", { { "layout", 1 }, { "solo_band", 1.5 } } },
        { "a mode of 2.5 is Soft II", { { "mode_single", 2.5 }, { "threshold_single", -12 } }, quarter },
        { "the low crossover alone", { { "layout", 1 }, { "crossover_low", 700 } } },
        { "the high one", { { "layout", 1 }, { "crossover_high", 9000 } } },
        { "a makeup alone", { { "gain_single", -12 } }, quarter },
        { "a linked makeup",
          { { "threshold_single", -12 }, { "link_single", 1 }, { "gain_single", -18 } },
          1.0 },
        { "the ceiling", { { "threshold_post", -6 }, { "gain_post", -6 } }, quarter },
        { "a ceiling above full scale", { { "threshold_post", -6 }, { "gain_post", 10 } }, 1.0 },
        { "a linked ceiling", { { "threshold_post", -12 }, { "link_post", 1 } }, 1.0 },
        { "the ceiling without post", { { "enable_post", 0 }, { "threshold_post", -12 } }, 1.0 },
    };

    const auto loud = expected::with (expected::defaults(), { { "in_gain", 18.0 } });

    for (const auto& [rule, changes, peak] : cases)
    {
        SCOPED_TRACE (rule);
        PluginUnderTest plugin;
        reference::expectReference (plugin, expected::with (loud, changes), 2, 48000.0, 4000);

        if (peak > 0.0)
        {
            const auto output = plugin.render (signals::noise (2, 4000));
            EXPECT_NEAR (output.getMagnitude (0, 4000), peak, 2.0e-6);
        }
    }
}

TEST (OrvoParameters, KeepWhatWasThereForAValueThatIsNoNumber)
{
    PluginUnderTest plugin, untouched;
    const auto signal = signals::noise (2, 1024);
    constexpr auto nan = std::numeric_limits<float>::quiet_NaN();

    for (auto* each : { &plugin, &untouched })
    {
        each->set (reference::randomValues (1, 2));
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

TEST (OrvoParameters, RestartTheMeasurementsWithEveryChangeButEnables)
{
    PluginUnderTest plugin (2, 22050.0);
    auto& processor = plugin.processor;
    auto& levels = processor.levels;
    const auto signal = signals::noise (2, 12000, 0.5f);
    processor.waveformTaps.setPoints (50);

    for (auto* parameter : processor.getParameters())
    {
        const auto name = parameter->getName (100);
        SCOPED_TRACE (name);
        plugin.render (signal);

        const auto before = levels.output.right;
        ASSERT_GT (before.maxPeak, 0.0);
        ASSERT_GT (processor.inputLoudness.integrated, -300.0f);

        const auto value = parameter->getValue();
        parameter->setValueNotifyingHost (value + (value < 0.5f ? 0.3f : -0.3f));
        const auto isRestarted = name != "Enabled";

        for (const auto* pair : { &levels.input, &levels.output })
        {
            for (const auto* channel : { &pair->left, &pair->right })
            {
                EXPECT_EQ (channel->maxPeak == 0.0, isRestarted);
                EXPECT_EQ (channel->maxRmsSum == 0.0f, isRestarted);
            }
        }

        for (const auto* meter : { &processor.inputLoudnessMeter, &processor.outputLoudnessMeter })
        {
            EXPECT_EQ (meter->integratedLoudness == -300.0f, isRestarted);
            EXPECT_EQ (meter->maxMomentaryLoudness == -300.0f, isRestarted);
            EXPECT_EQ (meter->blocksMeasured == 0, isRestarted);
        }

        if (isRestarted) // no block may come for a while
        {
            EXPECT_EQ (std::tuple (processor.inputLoudness.shortTermMax, processor.outputLoudness.integrated,
                                   processor.inputMaxPeakDb, processor.outputMaxPeakDb),
                       std::tuple (-300.0f, -300.0f, -100.0f, -100.0f));
            EXPECT_EQ (std::pair (processor.shortTermDifference, processor.peakDifference),
                       std::pair (0.0f, 0.0f));
        }

        for (const auto& tap : processor.waveformTaps.taps)
            EXPECT_EQ (std::isinf (tap.values[0]) && tap.writeIndex == 0, name == "Layout");

        const auto& after = levels.output.right;
        EXPECT_EQ (after.peak, before.peak);
        EXPECT_EQ (after.heldPeak, before.heldPeak);
        EXPECT_EQ (after.rmsSumSnapshot, before.rmsSumSnapshot);
    }
}
} // namespace
