#include "core/ExpectedParameters.h"
#include "core/PluginUnderTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace
{
using juce::AudioChannelSet;

TEST (OrvoAudioProcessor, TakesMonoToMonoAndStereoToStereoAlone)
{
    const OrvoAudioProcessor processor;
    const auto none = AudioChannelSet::disabled(), mono = AudioChannelSet::mono(),
               stereo = AudioChannelSet::stereo();

    struct Case
    {
        AudioChannelSet input, output;
        bool isSupported;
    };

    for (const auto& [input, output, isSupported] :
         { Case { mono, mono, true }, Case { stereo, stereo, true }, Case { mono, stereo, false },
           Case { stereo, mono, false }, Case { none, none, false }, Case { none, stereo, false },
           Case { stereo, none, false }, Case { stereo, AudioChannelSet::discreteChannels (2), false },
           Case { AudioChannelSet::createLCR(), AudioChannelSet::createLCR(), false },
           Case { AudioChannelSet::create5point1(), stereo, false } })
        EXPECT_EQ (processor.isBusesLayoutSupported ({ { input }, { output } }), isSupported)
            << input.getDescription() << " to " << output.getDescription();

    EXPECT_FALSE (processor.isBusesLayoutSupported ({})) << "no bus at all";
}

TEST (OrvoAudioProcessor, OffersItsParametersInTheirFixedOrder)
{
    PluginUnderTest plugin;
    const auto& parameters = plugin.processor.getParameters();
    const auto expectedParameters = expected::parameters();

    ASSERT_EQ (expectedParameters.size(), 70u);
    ASSERT_EQ (parameters.size(), 70);

    for (auto i = 0; i < parameters.size(); ++i)
    {
        const auto& row = expectedParameters[static_cast<size_t> (i)];
        SCOPED_TRACE (row.id);
        auto* parameter = dynamic_cast<juce::AudioProcessorValueTreeState::Parameter*> (parameters[i]);
        ASSERT_NE (parameter, nullptr);

        EXPECT_EQ (parameter->getParameterID().toStdString(), row.id);
        EXPECT_EQ (parameter->getName (100).toStdString(), row.name);
        EXPECT_EQ (parameter->getCurrentValueAsText().toStdString(), row.text);
        EXPECT_FLOAT_EQ (static_cast<float> (plugin.get (row.id)), static_cast<float> (row.defaultValue));
        EXPECT_FLOAT_EQ (parameter->getDefaultValue(),
                         static_cast<float> ((row.defaultValue - row.min) / (row.max - row.min)));

        const auto& range = parameter->getNormalisableRange();
        EXPECT_EQ (range.start, static_cast<float> (row.min));
        EXPECT_EQ (range.end, static_cast<float> (row.max));
        EXPECT_EQ (range.interval, 0.0f);
        EXPECT_EQ (range.skew, 1.0f);
        EXPECT_FALSE (range.symmetricSkew);

        EXPECT_EQ (parameter->getVersionHint(), 1);
        EXPECT_EQ (parameter->getLabel(), "");
        EXPECT_EQ (parameter->getCategory(), juce::AudioProcessorParameter::genericParameter);
        EXPECT_TRUE (parameter->isAutomatable());
        EXPECT_FALSE (parameter->isMetaParameter() || parameter->isDiscrete() || parameter->isBoolean());
        EXPECT_EQ (plugin.processor.listenedParameterIds.contains (row.id), row.id != "enable");
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
