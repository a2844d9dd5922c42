#include "dsp/SpectrumData.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
constexpr auto size = 2048;
constexpr auto rate = 48000.0;

TEST (SpectrumData, IsTheWindowedTransformOfAFrameAndFallsByAFactorOfEIn200Ms)
{
    SpectrumData spectrum;
    spectrum.prepare (rate);

    // Frames that do not overlap, louder and quieter: a bin shows the last or what is left of one before. A sine of
    // full scale would read 1.
    constexpr auto numFrames = 5;
    auto noise = signals::noise (1, numFrames * size);
    noise.applyGain (2 * size, size, 3.0f);
    noise.applyGain (3 * size, 2 * size, 0.01f);

    for (auto i = 0; i < noise.getNumSamples(); ++i)
        spectrum.pushSample (noise.getSample (0, i));

    for (auto bin : { 0, 1, 17, 512, 1023, 1500 })
    {
        auto expected = 0.0;

        for (auto frame = 0; frame < numFrames; ++frame)
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

        EXPECT_NEAR (static_cast<double> (spectrum.magnitudes[bin]), expected, 1.0e-6) << "bin " << bin;
    }
}
} // namespace
