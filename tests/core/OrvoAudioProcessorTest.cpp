#include "core/PluginUnderTest.h"
#include "dsp/ReferenceChain.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace
{
TEST (OrvoAudioProcessor, TakesOneOrTwoChannelsThatAreTheSameAtBothEnds)
{
    using Set = juce::AudioChannelSet;
    const OrvoAudioProcessor processor;
    EXPECT_FALSE (processor.isBusesLayoutSupported ({})) << "no bus at all";
    const Set sets[] { Set::mono(),      Set::stereo(),       Set::disabled(), Set::discreteChannels (2),
                       Set::createLCR(), Set::create5point1() };

    for (const auto& input : sets)
        for (const auto& output : sets)
            EXPECT_EQ (processor.isBusesLayoutSupported ({ { input }, { output } }),
                       input == output && (input.size() == 1 || input.size() == 2))
                << input.getDescription() << " to " << output.getDescription();
}

TEST (OrvoAudioProcessor, KeepsItsParametersLinearForTheAutomationOfHosts)
{
    PluginUnderTest plugin;

    for (const auto& row : expected::parameters())
    {
        const auto& parameter = plugin.parameter (row.id);
        EXPECT_TRUE (parameter.isAutomatable()) << row.id;
        EXPECT_FALSE (parameter.isDiscrete() || parameter.isBoolean()) << row.id;
        EXPECT_FLOAT_EQ (parameter.convertFrom0to1 (0.3f),
                         static_cast<float> (row.min + 0.3 * (row.max - row.min)))
            << row.id;
    }
}

TEST (OrvoAudioProcessor, ShowsValuesWithTheirUnitAndReadsNumbers)
{
    PluginUnderTest plugin;
    const auto expectText = [&] (const std::string& id, double value, const std::string& text)
    {
        auto& parameter = plugin.parameter (id);
        EXPECT_EQ (parameter.getText (parameter.convertTo0to1 (static_cast<float> (value)), 0).toStdString(),
                   text)
            << id << " at " << value;
    };

    expectText ("gain_post", 18.0, "18.0dB");
    expectText ("gain_post", -2.96, "-3.0dB");
    expectText ("threshold_post", -17.94, "-17.9dB");
    expectText ("crossover_low", 160.04, "160.0Hz");
    expectText ("crossover_high", 10000.0, "10000.0Hz");
    expectText ("shape_single", 1.0, "100%");
    expectText ("shape_single", 0.456, "46%");
    expectText ("mode_single", 1.5, "Soft II");
    expectText ("mode_single", 2.5, "Soft II");
    expectText ("enable", 0.5, "Bypassed");

    const std::map<std::string, std::vector<std::string>> choices {
        { "enable", { "Bypassed", "Enabled" } },
        { "mode_post", { "Hard", "Soft I", "Soft II", "Pressure", "Boost" } },
        { "enable_post", { "Off", "On" } },
        { "mute_post", { "Unmuted", "Muted" } },
        { "link_post", { "Unlinked", "Linked" } },
        { "solo_band", { "Low", "Mid", "High", "None" } },
        { "layout", { "Single Band", "Multi Band", "Mid / Side", "Left / Right" } },
        { "oversampling", { "Off", "2x", "4x", "8x", "16x" } },
    };

    for (const auto& [id, texts] : choices)
    {
        for (size_t choice = 0; choice < texts.size(); ++choice)
        {
            const auto value = static_cast<double> (choice);
            expectText (id, std::max (0.0, value - 0.4), texts[choice]);
            expectText (id, std::min (value + 0.4, static_cast<double> (texts.size() - 1)), texts[choice]);
        }
    }

    EXPECT_FLOAT_EQ (plugin.parameter ("threshold_single").getValueForText ("-4.5dB"), 0.75f);
    EXPECT_FLOAT_EQ (plugin.parameter ("mode_single").getValueForText ("3"), 0.75f);
}

TEST (OrvoAudioProcessor, SilencesAudioAndMidiWhileLicensingBlocksIt)
{
    PluginUnderTest plugin;
    const auto noteOn = juce::MidiMessage::noteOn (1, 60, 1.0f);
    const auto signal = signals::noise (2, 256, 0.5f);

    for (const auto isBlocked : { true, false, true })
    {
        plugin.setLicence ([&] (auto& status) { status.audioBlocked = isBlocked; });
        plugin.midi.addEvent (noteOn, 3);

        const auto peak = plugin.render (signal).getMagnitude (0, 256);
        EXPECT_EQ (peak, isBlocked ? 0.0f : signal.getMagnitude (0, 256));
        EXPECT_EQ (plugin.midi.isEmpty(), isBlocked);
    }
}

TEST (OrvoAudioProcessor, RunsAgainAtAnotherRateSizeOrWidth)
{
    PluginUnderTest plugin;
    const auto common = expected::with (reference::randomValues (0, 5), { { "crossover_high", 2500.0 } });

    struct Setup
    {
        double sampleRate;
        int blockSize, numChannels, layout, exponent, longest;
    };

    // Some blocks are longer than announced.
    for (const auto& [sampleRate, blockSize, numChannels, layout, exponent, longest] :
         { Setup { 8000.0, 64, 1, 1, 0, 64 }, Setup { 192000.0, 1024, 2, 1, 0, 1024 },
           Setup { 44100.0, 1, 2, 2, 2, 1 }, Setup { 11025.0, 4096, 1, 3, 1, 4096 },
           Setup { 44101.0, 333, 2, 2, 0, 2000 }, Setup { 96000.0, 512, 2, 1, 4, 1300 },
           Setup { 96000.0, 512, 1, 0, 3, 513 }, Setup { 48000.0, 0, 2, 1, 1, 64 } })
    {
        SCOPED_TRACE (sampleRate);
        plugin.prepare (numChannels, sampleRate, blockSize);
        EXPECT_EQ (plugin.processor.spectrum.sampleRate, sampleRate);
        EXPECT_EQ (plugin.processor.outputLoudness.integrated, -300.0f);
        const auto values = expected::with (common, { { "layout", layout }, { "oversampling", exponent } });
        reference::expectReference (plugin, values, numChannels, sampleRate, 3000, { longest, 0, 1 });
        EXPECT_EQ (plugin.processor.spectrum.writeIndex > 0, layout == 1);
    }
}

TEST (OrvoAudioProcessor, MeasuresBeforeTheInputGainAndBehindTheCeiling)
{
    constexpr auto sampleRate = 48000.0;
    PluginUnderTest plugin;
    auto& processor = plugin.processor;
    plugin.set ("in_gain", 12.0);

    // A sine at 997 Hz of amplitude a in one channel is 10 log10 (a^2 / 2) LUFS.
    auto signal = signals::sine (2, 5 * 48000, 997.0, sampleRate, 0.1);
    signal.applyGain (0, 0, signal.getNumSamples(), 0.5f);
    const auto loudness = 10.0 * std::log10 ((0.05 * 0.05 + 0.1 * 0.1) / 2.0);
    plugin.render (signal);

    EXPECT_NEAR (processor.inputLoudness.shortTerm, loudness, 0.05);
    EXPECT_NEAR (processor.outputLoudness.shortTerm, loudness + 12.0, 0.05);
    EXPECT_NEAR (processor.shortTermDifference, 12.0, 0.001);
    EXPECT_NEAR (processor.inputMaxPeakDb, -20.0, 0.001) << "the louder channel";
    EXPECT_NEAR (processor.outputMaxPeakDb, -8.0, 0.001);
    EXPECT_NEAR (processor.peakDifference, 12.0, 0.001);
    EXPECT_NEAR (processor.levels.input.left.getData().rms, 0.05 / std::sqrt (2.0), 1.0e-4);
    EXPECT_NEAR (processor.levels.output.right.getData().rms, signals::toGain (12.0) * 0.1 / std::sqrt (2.0),
                 1.0e-3);

    plugin.set ("threshold_post", -12.0);
    plugin.render (signal);
    EXPECT_NEAR (processor.outputMaxPeakDb, -8.0, 0.01) << "a maximum starts from the peak that still falls";

    plugin.set ("mute_post", 1.0);
    plugin.render (signal);
    EXPECT_NEAR (processor.outputMaxPeakDb, -12.0, 1.0e-4);
    EXPECT_NEAR (processor.peakDifference, 8.0, 0.001);

    plugin.set ("in_gain", 0.0);
    signal.clear();
    plugin.render (signal);
    plugin.set ("in_gain", 1.0);
    plugin.render (signal);

    EXPECT_EQ (processor.outputMaxPeakDb, -100.0f) << "silence";
    EXPECT_EQ (processor.peakDifference, 0.0f);
    EXPECT_EQ (processor.outputLoudness.shortTerm, -300.0f);

    // What clipped before the last three seconds counts in the whole only.
    plugin.set ("in_gain", 12.0);
    plugin.render (signals::sine (2, 4 * 48000, 997.0, sampleRate, 1.0));
    plugin.render (signals::sine (2, 4 * 48000, 997.0, sampleRate, 0.05));
    EXPECT_NEAR (processor.shortTermDifference, 12.0, 0.001);
    EXPECT_LT (processor.outputLoudness.integrated, processor.inputLoudness.integrated + 6.0f);
}

TEST (OrvoAudioProcessor, LeavesTheBufferBitForBitWhenOff)
{
    auto signal = signals::noise (2, 300, 3.0f);
    const juce::uint32 oddities[] { 0x7fc12345, 0xff800001, 0x7f800000, 0x00000001, 0x80000000 };
    std::memcpy (signal.getWritePointer (1, 100), oddities, sizeof (oddities));

    PluginUnderTest plugin;
    plugin.set (reference::randomValues (1, 1));
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

TEST (OrvoAudioProcessor, LeavesTheBufferAloneBeforeItIsPrepared)
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
