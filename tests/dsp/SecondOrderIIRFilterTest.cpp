#include "dsp/LUFSMeter.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
// The weighting stages of the loudness meter are the product's only use of the filter.

std::complex<double> responseOf (kf::SecondOrderIIRFilter& filter, double rate, double frequency)
{
    const auto length = static_cast<int> (rate);
    auto response = signals::impulse (1, length);
    filter.prepareToPlay (rate, 1);
    filter.processBlock (response);
    return signals::transformAt (response.getReadPointer (0), length, frequency / rate);
}

/** The analogue prototype at the frequency onto which the bilinear transform puts `frequency`. */
std::complex<double> prototypeAt (const kf::SecondOrderIIRFilter& filter, double rate, double frequency)
{
    const auto k = std::tan (filter.arctanK * 48000.0 / rate);
    const auto s = std::complex<double> (0.0, std::tan (std::numbers::pi * frequency / rate) / k);
    return (filter.VH * s * s + filter.VB * s / filter.Q + filter.VL) / (s * s + s / filter.Q + 1.0);
}

TEST (SecondOrderIIRFilter, UsesThePublishedCoefficientsAt48k)
{
    kf::LUFSMeter meter;
    meter.prepareToPlay (48000.0, 2, 512, 30);

    const auto inUse = [] (const kf::SecondOrderIIRFilter& f) {
        return std::vector { f.b0, f.b1, f.b2, f.a1, f.a2 };
    };

    EXPECT_EQ (inUse (meter.preFilter), (std::vector { 1.53512485958697, -2.69169618940638, 1.19839281085285,
                                                       -1.69065929318241, 0.73248077421585 }));
    EXPECT_EQ (inUse (meter.revisedLowFrequencyBCurveFilter),
               (std::vector { 1.0, -2.0, 1.0, -1.99004745483398, 0.99007225036621 }));
}

struct FilterRate : testing::TestWithParam<double>
{
};

TEST_P (FilterRate, FollowsThePrototypeAndThe48kResponse)
{
    const auto rate = GetParam();
    kf::LUFSMeter meter;

    for (auto* filter : { &meter.preFilter, &meter.revisedLowFrequencyBCurveFilter })
    {
        for (auto frequency : { 10.0, 38.0, 100.0, 1000.0, 3000.0, 10000.0, 20000.0 })
        {
            const auto actual = responseOf (*filter, rate, frequency);
            EXPECT_LT (std::abs (actual - prototypeAt (*filter, rate, frequency)), 3.0e-4)
                << frequency << " Hz";

            if (frequency <= 3000.0)
            {
                const auto at48k = responseOf (*filter, 48000.0, frequency);
                EXPECT_NEAR (std::abs (actual), std::abs (at48k), 0.02) << frequency << " Hz";
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P (SecondOrderIIRFilter, FilterRate,
                          testing::Values (44100.0, 48000.0, 96000.0, 192000.0));
} // namespace
