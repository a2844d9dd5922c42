#include "core/PluginUnderTest.h"
#include "dsp/ReferenceChain.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace
{
int expectedLatency (int exponent)
{
    juce::dsp::Oversampling<float> oversampler (2);
    reference::addStages (oversampler, exponent);

    if (exponent == 0)
        return 0;

    oversampler.initProcessing (512);
    return static_cast<int> (oversampler.getLatencyInSamples());
}

/** The delay of low frequencies: the impulse response's centre of gravity. */
double delayOf (const juce::AudioBuffer<float>& response, int channel)
{
    auto sum = 0.0, moment = 0.0;

    for (auto i = 0; i < response.getNumSamples(); ++i)
    {
        const auto sample = static_cast<double> (response.getSample (channel, i));
        sum += sample;
        moment += i * sample;
    }

    return moment / sum;
}

TEST (Oversampling, TakesEffectWithTheNextBlockAndItsLatency)
{
    PluginUnderTest plugin;
    std::vector<int> told;
    const HostListener host (plugin.processor,
                             [&] (const auto& details)
                             {
                                 if (details.latencyChanged)
                                     told.push_back (plugin.processor.getLatencySamples());
                             });
    auto latency = 0;

    for (const auto exponent : { 2, 0, 4, 1, 3, 0, 4, 2 })
    {
        SCOPED_TRACE (1 << exponent);
        plugin.set ("oversampling", exponent);
        EXPECT_EQ (plugin.processor.getLatencySamples(), latency) << "nothing happens before the next block";
        EXPECT_TRUE (told.empty());

        const auto response = plugin.render (signals::impulse (2, 1024));
        latency = expectedLatency (exponent);

        EXPECT_EQ (plugin.processor.getLatencySamples(), latency);
        EXPECT_EQ (std::exchange (told, {}), std::vector<int> { latency });
        EXPECT_NEAR (delayOf (response, 0), latency, 0.01);
        EXPECT_NEAR (delayOf (response, 1), latency, 0.01);

        // 40 dB in two seconds, at the sections' new rate too.
        const auto envelope = plugin.processor.singleClipper.current->envelope;
        plugin.render (signals::silence (2, 48000));
        EXPECT_NEAR (plugin.processor.singleClipper.current->envelope / envelope, 0.1, 0.003);
    }

    plugin.prepare (2, 96000.0, 64);
    EXPECT_EQ (plugin.processor.getLatencySamples(), latency) << "in samples it does not depend on the rate";
    EXPECT_TRUE (told.empty());

    plugin.set ({ { "enable", 0.0 }, { "oversampling", 1.0 } });
    plugin.render (signals::impulse (2, 64));
    EXPECT_EQ (plugin.processor.getLatencySamples(), expectedLatency (1)) << "also while the plug-in is off";
}

TEST (Oversampling, ChangedAgainWhileTheHostIsToldIsPreparedBeforeTheBlockRuns)
{
    for (const auto layout : { 1, 2 })
    {
        const auto signal = signals::noise (2, 512);
        PluginUnderTest plugin, direct;
        plugin.set ("layout", layout);
        direct.set ("layout", layout);
        direct.set ("oversampling", 4);

        const HostListener host (plugin.processor,
                                 [&] (const auto& details)
                                 {
                                     if (details.latencyChanged && plugin.get ("oversampling") == 1.0)
                                         plugin.set ("oversampling", 4);
                                 });
        plugin.set ("oversampling", 1);

        EXPECT_EQ (signals::largestDifference (plugin.render (signal), direct.render (signal)), 0.0);
        EXPECT_EQ (plugin.processor.getLatencySamples(), expectedLatency (4));
    }
}
} // namespace
