#include "dsp/ChainUnderTest.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
constexpr auto sampleRate = 48000.0;

TEST (ChainMeasurements, FeedTheTapsAtBothEnds)
{
    constexpr auto numPoints = 40, samplesPerPoint = 6000, numPushed = 43;
    ChainUnderTest chain;
    auto& taps = chain.waveformTaps;
    taps.setPoints (numPoints);
    chain.set ({ { "in_gain", 6.0 }, { "threshold_single", -9.0 }, { "mode_single", 0.0 } });

    auto input = signals::noise (2, numPushed * samplesPerPoint, 0.5f);
    for (auto point = 0; point < numPushed; ++point)
        input.applyGain (point * samplesPerPoint, samplesPerPoint,
                         0.02f * static_cast<float> (point * 17 % numPoints));

    const auto output = chain.render (input, { 512, 100 });
    const auto coefficient = std::pow (0.01, 1.0 / (0.1 * 8.0)); // 100 ms at 8 points per second
    auto smoothed = 0.0;

    for (auto point = 0; point < numPushed; ++point)
    {
        const auto peakIn = [point] (const auto& buffer)
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

    taps.setPoints (numPoints + 1);

    for (const auto& tap : taps.taps)
    {
        EXPECT_EQ (tap.writeIndex, 0);
        EXPECT_EQ (*std::max_element (tap.values.begin(), tap.values.end()),
                   -std::numeric_limits<float>::infinity());
    }
}

TEST (ChainMeasurements, FeedTheSpectrumOnDemandWithTheMeanOfTheChannels)
{
    constexpr auto bin = 64;
    ChainUnderTest chain;
    chain.set ({ { "in_gain", 6.0 }, { "layout", 1 } });
    const auto& magnitudes = chain.spectrum.magnitudes;

    // A steady tone is taken in every other frame and decays in between.
    const auto tone = signals::sine (2, 3 * 2048, bin * sampleRate / 2048.0, sampleRate, 0.4);

    auto opposed = tone;
    opposed.applyGain (1, 0, opposed.getNumSamples(), -1.0f);
    chain.render (opposed);
    EXPECT_EQ (magnitudes[bin], 0.0f) << "channels that cancel";

    auto oneSided = tone;
    oneSided.clear (1, 0, oneSided.getNumSamples());
    chain.render (oneSided);
    EXPECT_NEAR (magnitudes[bin], 0.2, 0.001);

    chain.render (tone);
    EXPECT_NEAR (magnitudes[bin], 0.4, 0.002);

    const auto picture = magnitudes;
    chain.set ({ { "layout", 0 } });
    chain.render (signals::noise (2, 4 * 2048));
    EXPECT_EQ (magnitudes, picture) << "the picture stays";
}

TEST (ChainMeasurements, StartAnewWithEachPreparationAtItsRate)
{
    ChainUnderTest chain;
    chain.waveformTaps.setPoints (50); // a tenth of a second each
    chain.set ({ { "layout", 1 } });

    for (const auto rate : { 48000.0, 96000.0, 22050.0 })
    {
        SCOPED_TRACE (rate);
        chain.measurements.prepare (rate, 512, 2);
        EXPECT_EQ (chain.inputLoudness.momentaryMax, -300.0f);
        EXPECT_EQ (chain.outputLoudness.integrated, -300.0f);
        EXPECT_EQ (chain.levels.output.right.getData().heldPeak, 0.0);
        EXPECT_EQ (chain.spectrum.magnitudes, juce::Array<float> (std::vector<float> (2048).data(), 2048));
        EXPECT_EQ (chain.spectrum.sampleRate, rate);

        const auto seconds = [rate] (double s) { return juce::roundToInt (s * rate); };
        const auto amplitude = 0.25;
        chain.waveformTaps.clear();
        chain.render (signals::sine (2, seconds (3.5), 997.0, rate, amplitude));
        EXPECT_NEAR (chain.inputLoudness.shortTerm, signals::toDb (amplitude), 0.05);
        EXPECT_NEAR (chain.outputLoudness.momentary, signals::toDb (amplitude), 0.05);
        EXPECT_EQ (chain.waveformTaps.taps.getReference (1).writeIndex, 35);
        const auto bin = juce::roundToInt (997.0 * 2048.0 / rate);
        EXPECT_GT (chain.spectrum.magnitudes[bin], 0.5 * amplitude);

        // A held peak stays for a second; half of the RMS window of 0.3 s is full when half of that has passed.
        auto silence = signals::silence (2, seconds (0.15));
        silence.setSample (0, 0, 0.5f);
        chain.render (silence);
        EXPECT_NEAR (chain.levels.input.left.getData().rms, 0.5 * amplitude, 0.002);
        EXPECT_NEAR (chain.levels.input.left.getData().peak, 0.5 * std::exp (-0.15 / 0.3), 0.001);
        chain.render (signals::silence (2, seconds (0.8)));
        EXPECT_EQ (chain.levels.input.left.getData().heldPeak, 0.5);
    }
}
} // namespace
