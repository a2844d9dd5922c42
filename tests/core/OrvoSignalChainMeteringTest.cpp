#include "core/PluginUnderTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace
{
constexpr auto sampleRate = 48000.0;

TEST (SignalChainMetering, MeasuresBeforeTheInputGainAndBehindTheCeiling)
{
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

TEST (SignalChainMetering, FeedsTheTapsAtBothEnds)
{
    constexpr auto numPoints = 40, samplesPerPoint = 6000, numPushed = 43;
    PluginUnderTest plugin;
    auto& taps = plugin.processor.waveformTaps;
    taps.setPoints (numPoints);
    plugin.set ({ { "in_gain", 6.0 }, { "threshold_single", -9.0 }, { "mode_single", 0.0 } });

    auto input = signals::noise (2, numPushed * samplesPerPoint, 0.5f);
    for (auto point = 0; point < numPushed; ++point)
        input.applyGain (point * samplesPerPoint, samplesPerPoint,
                         0.02f * static_cast<float> (point * 17 % numPoints));

    const auto output = plugin.render (input, { 512, 100 });
    const auto coefficient = std::pow (0.01, 1.0 / (0.1 * 8.0)); // 100 ms at 8 points per second
    auto smoothed = 0.0;

    for (auto point = 0; point < numPushed; ++point)
    {
        const auto peakIn = [&] (const auto& buffer)
        { return static_cast<double> (buffer.getMagnitude (point * samplesPerPoint, samplesPerPoint)); };
        const auto toDb = [] (double peak) { return std::max (-100.0, signals::toDb (peak)); };

        const auto peak = peakIn (output);
        smoothed = peak < smoothed ? peak + (smoothed - peak) * coefficient : peak;

        if (point < numPushed - numPoints)
            continue; // overwritten since

        const auto place = point % numPoints;
        EXPECT_NEAR (taps.taps.getReference (0).values[place], toDb (peakIn (input)), 1.0e-3) << point;
        EXPECT_NEAR (taps.taps.getReference (1).values[place], toDb (smoothed), 1.0e-3) << point;
    }

    const auto isEmpty = [] (const WaveformTap& tap)
    {
        return tap.writeIndex == 0
               && std::all_of (tap.values.begin(), tap.values.end(),
                               [] (float value) { return value == -std::numeric_limits<float>::infinity(); });
    };

    plugin.set ("in_gain", 0.0);
    EXPECT_FALSE (isEmpty (taps.taps.getReference (0)) || isEmpty (taps.taps.getReference (1)));
    plugin.set ("layout", 3.0);
    EXPECT_TRUE (isEmpty (taps.taps.getReference (0)) && isEmpty (taps.taps.getReference (1)));

    plugin.render (input);
    taps.setPoints (numPoints + 1);
    EXPECT_TRUE (isEmpty (taps.taps.getReference (0)) && isEmpty (taps.taps.getReference (1)));
}

TEST (SignalChainMetering, FeedsTheSpectrumInMultiBandAloneWithTheMeanOfTheChannels)
{
    constexpr auto bin = 64;
    PluginUnderTest plugin;
    plugin.set ("in_gain", 6.0);
    const auto& magnitudes = plugin.processor.spectrum.magnitudes;

    // A steady tone is taken in every other frame and decays in between.
    const auto tone = signals::sine (2, 3 * 2048, bin * sampleRate / 2048.0, sampleRate, 0.4);

    for (const auto layout : { 0.0, 2.0, 3.0 })
    {
        plugin.set ("layout", layout);
        plugin.render (tone);
        EXPECT_EQ (*std::max_element (magnitudes.begin(), magnitudes.end()), 0.0f) << layout;
    }

    plugin.set ("layout", 1.0);

    auto opposed = tone;
    opposed.applyGain (1, 0, opposed.getNumSamples(), -1.0f);
    plugin.render (opposed);
    EXPECT_EQ (magnitudes[bin], 0.0f) << "channels that cancel";

    auto oneSided = tone;
    oneSided.clear (1, 0, oneSided.getNumSamples());
    plugin.render (oneSided);
    EXPECT_NEAR (magnitudes[bin], 0.2, 0.001);

    plugin.render (tone);
    EXPECT_NEAR (magnitudes[bin], 0.4, 0.002);

    const auto picture = magnitudes;
    plugin.set ("layout", 0.0);
    plugin.render (signals::noise (2, 4 * 2048));
    EXPECT_EQ (magnitudes, picture) << "the picture stays";
}

TEST (SignalChainMetering, StartsAnewWithEachPreparationAtItsRate)
{
    PluginUnderTest plugin;
    auto& processor = plugin.processor;
    processor.waveformTaps.setPoints (50); // a tenth of a second each
    plugin.set ("layout", 1.0);

    for (const auto rate : { 48000.0, 96000.0, 22050.0 })
    {
        SCOPED_TRACE (rate);
        plugin.prepare (2, rate, 512);
        EXPECT_EQ (processor.inputLoudness.momentaryMax, -300.0f);
        EXPECT_EQ (processor.outputLoudness.integrated, -300.0f);
        EXPECT_EQ (processor.levels.output.right.getData().heldPeak, 0.0);
        EXPECT_EQ (processor.spectrum.magnitudes,
                   juce::Array<float> (std::vector<float> (2048).data(), 2048));
        EXPECT_EQ (processor.spectrum.sampleRate, rate);

        const auto seconds = [rate] (double s) { return juce::roundToInt (s * rate); };
        const auto amplitude = 0.25;
        processor.waveformTaps.clear();
        plugin.render (signals::sine (2, seconds (3.5), 997.0, rate, amplitude));
        EXPECT_NEAR (processor.inputLoudness.shortTerm, signals::toDb (amplitude), 0.05);
        EXPECT_NEAR (processor.outputLoudness.momentary, signals::toDb (amplitude), 0.05);
        EXPECT_EQ (processor.waveformTaps.taps.getReference (1).writeIndex, 35);
        const auto bin = juce::roundToInt (997.0 * 2048.0 / rate);
        EXPECT_GT (processor.spectrum.magnitudes[bin], 0.5 * amplitude);

        // A held peak stays for a second; half of the RMS window of 0.3 s is full when half of that has passed.
        auto silence = signals::silence (2, seconds (0.15));
        silence.setSample (0, 0, 0.5f);
        plugin.render (silence);
        EXPECT_NEAR (processor.levels.input.left.getData().rms, 0.5 * amplitude, 0.002);
        EXPECT_NEAR (processor.levels.input.left.getData().peak, 0.5 * std::exp (-0.15 / 0.3), 0.001);
        plugin.render (signals::silence (2, seconds (0.8)));
        EXPECT_EQ (processor.levels.input.left.getData().heldPeak, 0.5);
    }
}

TEST (SignalChainMetering, StartsAnewWithEveryChangeOfAParameterButEnable)
{
    PluginUnderTest plugin (2, 22050.0);
    auto& processor = plugin.processor;
    auto& levels = processor.levels;
    const auto signal = signals::noise (2, 12000, 0.5f);

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

        const auto& after = levels.output.right;
        EXPECT_EQ (after.peak, before.peak);
        EXPECT_EQ (after.heldPeak, before.heldPeak);
        EXPECT_EQ (after.rmsSumSnapshot, before.rmsSumSnapshot);
    }
}
} // namespace
