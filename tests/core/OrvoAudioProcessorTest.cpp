#include "core/PluginUnderTest.h"

#include <gtest/gtest.h>

#include <algorithm>
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

    for (const auto& [id, name, min, max, defaultValue, text] : expected::parameters())
    {
        const auto& parameter = plugin.parameter (id);
        EXPECT_TRUE (parameter.isAutomatable()) << id;
        EXPECT_FALSE (parameter.isDiscrete() || parameter.isBoolean()) << id;
        EXPECT_FLOAT_EQ (parameter.convertFrom0to1 (0.3f), static_cast<float> (min + 0.3 * (max - min)))
            << id;
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
    tessarin::LicenceManager::Status status;
    const auto noteOn = juce::MidiMessage::noteOn (1, 60, 1.0f);
    const auto signal = signals::noise (2, 256, 0.5f);

    for (const auto isBlocked : { true, false, true })
    {
        status.audioBlocked = isBlocked;
        plugin.processor.licenceManager.setStatus (status);
        plugin.midi.addEvent (noteOn, 3);

        const auto peak = plugin.render (signal).getMagnitude (0, 256);
        EXPECT_EQ (peak, isBlocked ? 0.0f : signal.getMagnitude (0, 256));
        EXPECT_EQ (plugin.midi.isEmpty(), isBlocked);
    }
}
} // namespace
