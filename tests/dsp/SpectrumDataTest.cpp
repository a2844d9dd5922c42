#include "dsp/SpectrumData.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
constexpr auto size = 2048;
constexpr auto rate = 48000.0;

void push (SpectrumData& spectrum, const juce::AudioBuffer<float>& signal)
{
    for (auto i = 0; i < signal.getNumSamples(); ++i)
        spectrum.pushSample (signal.getSample (0, i));
}

double magnitude (const SpectrumData& spectrum, int bin)
{
    return static_cast<double> (spectrum.magnitudes[bin]);
}

TEST (SpectrumData, ReadsAFullScaleSineAsOneAndFallsByAFactorOfEIn200Ms)
{
    SpectrumData spectrum;
    spectrum.prepare (rate);
    const auto tone = signals::sine (1, size, 100.0 * rate / size, rate);
    push (spectrum, tone);

    EXPECT_NEAR (magnitude (spectrum, 100), 1.0, 1.0e-3);
    EXPECT_NEAR (magnitude (spectrum, 101), 0.5, 1.0e-2) << "the window's skirt";
    EXPECT_LT (magnitude (spectrum, 110), 1.0e-4);

    push (spectrum, signals::silence (1, 5 * size));
    EXPECT_NEAR (magnitude (spectrum, 100), std::exp (-5.0 * size / (0.2 * rate)), 1.0e-3);
    push (spectrum, tone);
    EXPECT_NEAR (magnitude (spectrum, 100), 1.0, 1.0e-3) << "the rise is instant";

    spectrum.prepare (96000.0);
    EXPECT_EQ (magnitude (spectrum, 100), 0.0) << "cleared";
}

TEST (SpectrumData, IsTheWindowedTransformOfAFrame)
{
    SpectrumData spectrum;
    spectrum.prepare (rate);
    const auto noise = signals::noise (1, 2 * size);
    push (spectrum, noise);

    // Two frames that do not overlap; a bin shows the second or what is left of the first.
    for (auto bin : { 0, 1, 17, 512, 1023, 1500 })
    {
        auto expected = 0.0;

        for (auto frame : { 0, 1 })
        {
            std::vector<double> windowed;
            auto windowSum = 0.0;

            for (auto i = 0; i < size; ++i)
            {
                const auto window = 0.5 - 0.5 * std::cos (2.0 * std::numbers::pi * i / (size - 1));
                windowed.push_back (window * static_cast<double> (noise.getSample (0, frame * size + i)));
                windowSum += window;
            }

            const auto sum = signals::transformAt (windowed.data(), size, static_cast<double> (bin) / size);
            const auto present = std::abs (sum) / (windowSum / 2.0);
            expected = expected < present ? present : expected * std::exp (-size / (0.2 * rate));
        }

        EXPECT_NEAR (magnitude (spectrum, bin), expected, 1.0e-6) << "bin " << bin;
    }
}
} // namespace
