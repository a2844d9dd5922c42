#include "../core/ExpectedParameters.h"
#include "HostTestSupport.h"
#include "ModuleFactory.h"
#include "PluginHost.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
TEST (Module, ReportsItsMakerAndThreeClasses)
{
    const auto factory = readFactory (builtModule());

    EXPECT_EQ (factory.vendor, "Tessarin");
    EXPECT_TRUE (factory.url.startsWith ("https://"));
    EXPECT_TRUE (factory.email.contains ("@"));
    EXPECT_EQ (factory.flags, 16);

    // A class ID ends in the maker's and the product's codes, "TeSa" and "OrVo".
    const std::map<juce::String, std::pair<juce::String, juce::String>> expected {
        { "Audio Module Class", { "Fx|Distortion", "ABCDEF019182FAEB546553614F72566F" } },
        { "Component Controller Class", { "Fx|Distortion", "ABCDEF011234ABCD546553614F72566F" } },
        { "Plugin Compatibility Class", { "", "ABCDEF01C0DEF00D546553614F72566F" } }
    };
    std::map<juce::String, std::pair<juce::String, juce::String>> found;

    for (const auto& entry : factory.classes)
    {
        found[entry.category] = { entry.subCategories, entry.id };
        EXPECT_EQ (entry.name, "Orvo");
        EXPECT_EQ (entry.vendor, "Tessarin");
        EXPECT_EQ (entry.version, "1.0.1");
        EXPECT_EQ (entry.sdkVersion, "VST 3.7.12");
        EXPECT_EQ (entry.cardinality, 0x7fffffff);
    }

    EXPECT_EQ (factory.classes.size(), 3u);
    EXPECT_EQ (found, expected);
}

TEST (Module, TellsAHostWhatItIs)
{
    PluginHost host (builtModule());
    auto& instance = host.getInstance();

    EXPECT_EQ (instance.getName(), "Orvo");
    EXPECT_FALSE (instance.acceptsMidi() || instance.producesMidi());
    EXPECT_FALSE (instance.supportsDoublePrecisionProcessing());
    EXPECT_EQ (instance.getTailLengthSeconds(), 0.0);
    EXPECT_TRUE (instance.hasEditor());
    EXPECT_EQ (host.getLatency(), 0);

    for (const auto isInput : { true, false })
    {
        ASSERT_EQ (instance.getBusCount (isInput), 1);
        EXPECT_EQ (instance.getBus (isInput, 0)->getName(), isInput ? "Input" : "Output");
        EXPECT_EQ (instance.getChannelLayoutOfBus (isInput, 0), juce::AudioChannelSet::stereo());
        EXPECT_TRUE (instance.getBus (isInput, 0)->isEnabledByDefault());
    }
}

/** The ID by which a VST3 host knows a parameter: the text's polynomial hash to the base 31, without the
    sign. */
juce::String vst3Id (const std::string& id)
{
    juce::uint32 hash = 0;
    for (const auto c : id)
        hash = 31 * hash + static_cast<unsigned char> (c);

    return juce::String (hash & 0x7fffffff);
}

TEST (Module, OffersSeventyParametersInOrderAndThenTheWrappersOwn)
{
    PluginHost host (builtModule());
    const auto& parameters = host.getParameters();
    const auto expected = expected::parameters();

    ASSERT_EQ (expected.size(), 70u);
    ASSERT_GT (parameters.size(), expected.size());

    for (size_t i = 0; i < expected.size(); ++i)
    {
        auto* raw = host.getInstance().getParameters()[static_cast<int> (i)];
        const auto& row = expected[i];
        const juce::String id (row.id);

        EXPECT_EQ (dynamic_cast<juce::HostedAudioProcessorParameter*> (raw)->getParameterID(),
                   vst3Id (row.id))
            << i;
        EXPECT_EQ (parameters[i].getId(), id);
        EXPECT_EQ (parameters[i].getTitle(), juce::String (row.name));
        EXPECT_EQ (parameters[i].getDefaultText(), juce::String (row.text)) << id;
        EXPECT_EQ (parameters[i].getText(), juce::String (row.text)) << id;
        EXPECT_TRUE (raw->isAutomatable() && ! raw->isDiscrete() && raw->getLabel().isEmpty()) << id;
    }

    EXPECT_TRUE (parameters[70].isAddedByWrapper());
    EXPECT_EQ (host.getInstance().getParameters()[70], host.getInstance().getBypassParameter());

    for (auto i = expected.size(); i < parameters.size(); ++i)
        EXPECT_TRUE (parameters[i].isAddedByWrapper()) << i;
}

TEST (Module, TakesAChangeOfOversamplingWithTheNextBlockAndItsLatencyToo)
{
    PluginHost host (builtModule());
    for (const auto* section : { "enable_single", "enable_post" })
        host.getParameter (section).setFromText ("Off");

    juce::AudioBuffer<float> block (2, 512);
    auto greatest = 0;

    host.setChannels (2);
    host.prepare (48000.0, block.getNumSamples());

    for (const auto* factor : { "2x", "16x", "4x", "8x", "Off" })
    {
        host.getParameter ("oversampling").setFromText (factor);
        block.clear();
        for (auto channel = 0; channel < 2; ++channel)
            block.setSample (channel, 0, 0.5f);

        host.process (block);

        // The filters are symmetric about their latency, so an impulse comes out largest there.
        const auto* samples = block.getReadPointer (1);
        const auto peak = std::max_element (samples, samples + 512,
                                            [] (auto a, auto b) { return std::abs (a) < std::abs (b); });
        EXPECT_EQ (peak - samples, host.getLatency()) << factor;
        greatest = juce::jmax (greatest, host.getLatency());
    }

    EXPECT_GT (greatest, 0);
    EXPECT_EQ (host.getLatency(), 0);
}
} // namespace
