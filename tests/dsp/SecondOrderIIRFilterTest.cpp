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

std::vector<double> inUse (const kf::SecondOrderIIRFilter& f)
{
    return { f.b0, f.b1, f.b2, f.a1, f.a2 };
}

TEST (SecondOrderIIRFilter, UsesThePublishedCoefficientsAt48k)
{
    kf::LUFSMeter meter;
    meter.prepareToPlay (48000.0, 2, 512, 30);

    EXPECT_EQ (inUse (meter.preFilter), (std::vector { 1.53512485958697, -2.69169618940638, 1.19839281085285,
                                                       -1.69065929318241, 0.73248077421585 }));
    EXPECT_EQ (inUse (meter.revisedLowFrequencyBCurveFilter),
               (std::vector { 1.0, -2.0, 1.0, -1.99004745483398, 0.99007225036621 }));
}

TEST (SecondOrderIIRFilter, FollowsThePrototypeAndThe48kResponseAtEveryRate)
{
    kf::LUFSMeter meter;

    for (const auto rate : { 44100.0, 48000.0, 96000.0, 192000.0 })
    {
        for (auto* filter : { &meter.preFilter, &meter.revisedLowFrequencyBCurveFilter })
        {
            for (const auto frequency : { 10.0, 38.0, 100.0, 1000.0, 3000.0, 10000.0, 20000.0 })
            {
                SCOPED_TRACE (testing::Message() << rate << " " << frequency);
                const auto actual = responseOf (*filter, rate, frequency);
                EXPECT_LT (std::abs (actual - prototypeAt (*filter, rate, frequency)), 3.0e-4);

                if (frequency <= 3000.0)
                {
                    EXPECT_NEAR (std::abs (actual), std::abs (responseOf (*filter, 48000.0, frequency)),
                                 0.02);
                }
            }
        }
    }
}
} // namespace
