#include "dsp/MultiModeClipper.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
using signals::toDb;
using signals::toGain;

// The curves in double precision, from the input's magnitude, the threshold in dB and the second control.

double hard (double x, double thresholdDb, double)
{
    return std::min (x, toGain (thresholdDb));
}

double softI (double x, double thresholdDb, double kneeDb)
{
    const auto above = std::max (-100.0, toDb (x)) - thresholdDb;

    if (above <= -kneeDb)
        return x;

    if (above >= kneeDb)
        return toGain (thresholdDb);

    return x * toGain (-std::pow (above + kneeDb, 2.0) / (4.0 * kneeDb));
}

double softII (double x, double thresholdDb, double)
{
    const auto g = toGain (thresholdDb);

    if (x >= 1.0)
        return g;

    return thresholdDb < 0.0 ? std::abs (x - (1.0 - g) * std::pow (x, 1.0 / (1.0 - g))) : x;
}

double pressure (double x, double thresholdDb, double curve)
{
    const auto a = x / toGain (thresholdDb);
    const auto limit = 2.0 + 0.5 * curve;
    const auto bow = 0.25 - (curve - 0.5) / 2.0; // the last term is its square

    if (a > limit)
        return 0.0;

    if (a > 1.0)
        return toGain (thresholdDb) * (1.0 - std::pow ((a - 1.0) / (limit - 1.0), 2.0));

    return toGain (thresholdDb)
           * ((1.0 + curve) * a + (1.0 - 2.0 * curve) * a * a + (curve - 1.0) * a * a * a
              - std::pow (a * (1.0 - a) * bow, 2.0));
}

double boost (double x, double thresholdDb, double amount)
{
    const auto t = toGain (thresholdDb);
    const auto n = 3.0 + 47.0 * std::pow (1.0 - amount, 1.0 / 0.35);
    return x > t ? t : t * (x / t - std::pow (x / t, n) / n) * n / (n - 1.0);
}

double foldback (double x, double thresholdDb, double kneeDb)
{
    const auto level = std::max (-100.0, toDb (x));
    auto out = level;

    if (level > thresholdDb + kneeDb)
    {
        out = 2.0 * thresholdDb - level;
    }
    else if (level > thresholdDb - kneeDb)
    {
        // A Bezier curve from start over the threshold to the reflected end, which is as low as the start.
        const auto t = (level - (thresholdDb - kneeDb)) / (2.0 * kneeDb);
        out = thresholdDb - kneeDb * ((1.0 - t) * (1.0 - t) + t * t);
    }

    return out > -100.0 ? toGain (out) : 0.0;
}

double tanhCurve (double x, double thresholdDb, double drive)
{
    return std::tanh (x / toGain (thresholdDb) * (2.0 * drive + 1.0)) * toGain (thresholdDb);
}

double sinCurve (double x, double thresholdDb, double drive)
{
    return std::sin (x / toGain (thresholdDb) * (2.0 * drive + 1.0)) * toGain (thresholdDb);
}

struct Curve
{
    const char* name;
    std::unique_ptr<luna::Saturator> (*make)();
    double (*formula) (double magnitude, double thresholdDb, double second);
    std::vector<float> seconds;
};

/** For the test's name in ctest. */
void PrintTo (const Curve& curve, std::ostream* stream)
{
    *stream << curve.name;
}

template <typename Saturator>
std::unique_ptr<luna::Saturator> make()
{
    return std::make_unique<Saturator>();
}

struct EachCurve : testing::TestWithParam<Curve>
{
    std::unique_ptr<luna::Saturator> makeCurve (float thresholdDb, float second) const
    {
        auto curve = GetParam().make();
        curve->setParameter (second, 1);
        curve->setParameter (thresholdDb, 0);
        return curve;
    }
};

TEST_P (EachCurve, FollowsItsFormulaAndIsOdd)
{
    // Evenly up to 6 dB above full scale, and in steps of 0.7 dB down to silence.
    std::vector<float> inputs;
    for (auto i = 0; i <= 4000; ++i)
        inputs.push_back (static_cast<float> (i) / 2000.0f);
    for (auto db = 12.0; db > -99.0; db -= 0.7)
        inputs.push_back (static_cast<float> (toGain (db)));

    for (auto thresholdDb : { 0.0f, -0.05f, -1.0f, -6.0206f, -12.3f, -18.0f })
    {
        for (auto second : GetParam().seconds)
        {
            const auto curve = makeCurve (thresholdDb, second);

            for (auto x : inputs)
            {
                const auto y = curve->processSample (x);
                const auto expected = GetParam().formula (
                    static_cast<double> (x), static_cast<double> (thresholdDb), static_cast<double> (second));

                ASSERT_NEAR (static_cast<double> (y), expected, 2.0e-6)
                    << "x " << x << ", threshold " << thresholdDb << " dB, second control " << second;
                ASSERT_EQ (curve->processSample (-x), -y) << "x " << x;
            }
        }
    }
}

TEST_P (EachCurve, HasOneFormForSamplesAndBlocks)
{
    const auto curve = makeCurve (-4.0f, GetParam().seconds.back());
    const auto input = signals::noise (3, 1000, 2.0f);

    // Odd offsets and lengths, so that a vectorised loop has a head and a tail.
    for (const auto& [start, length] :
         { std::pair { 0, 1000 }, { 1, 997 }, { 3, 5 }, { 999, 1 }, { 500, 0 } })
    {
        auto actual = input;
        auto expected = input;
        auto block = juce::dsp::AudioBlock<float> (actual).getSubBlock (static_cast<size_t> (start),
                                                                        static_cast<size_t> (length));
        curve->processBlock (juce::dsp::ProcessContextReplacing<float> (block));

        for (auto channel = 0; channel < 3; ++channel)
            for (auto i = start; i < start + length; ++i)
                expected.setSample (channel, i, curve->processSample (input.getSample (channel, i)));

        EXPECT_EQ (signals::largestDifference (actual, expected), 0.0) << start << ", " << length;
    }
}

INSTANTIATE_TEST_SUITE_P (
    Curves, EachCurve,
    testing::Values (Curve { "Hard", make<luna::HardClipper>, hard, { 0.0f, 1.0f } },
                     Curve { "SoftI", make<luna::SoftClipper>, softI, { 0.0f, 0.1f, 4.5f, 9.0f } },
                     Curve { "SoftII", make<luna::Dough>, softII, { 0.0f } },
                     Curve { "Pressure", make<luna::InflatorClipper>, pressure, { 0.0f, 0.3f, 0.5f, 1.0f } },
                     Curve { "Boost", make<luna::Boost>, boost, { 0.0f, 0.2f, 0.7f, 1.0f } },
                     Curve { "Foldback", make<luna::Foldback>, foldback, { 0.0f, 0.1f, 4.5f, 9.0f } },
                     Curve { "Tanh", make<luna::TanhClipper>, tanhCurve, { 0.0f, 0.4f, 1.0f } },
                     Curve { "Sin", make<luna::SinClipper>, sinCurve, { 0.0f, 0.4f, 1.0f } }),
    [] (const auto& test) { return std::string (test.param.name); });

/** What the curve makes of a sample whose value in single precision is exact. */
template <typename Saturator>
float outputOf (float thresholdDb, float second, float x)
{
    Saturator curve;
    curve.setParameter (thresholdDb, 0);
    curve.setParameter (second, 1);
    return curve.processSample (x);
}

TEST (Curves, AreExactWhereTheyLeaveTheSampleOrTheThreshold)
{
    using namespace luna;
    EXPECT_EQ (outputOf<HardClipper> (0.0f, 0.0f, 1.0f), 1.0f);
    EXPECT_EQ (outputOf<SoftClipper> (0.0f, 9.0f, 0.35f), 0.35f) << "below the knee";
    EXPECT_EQ (outputOf<Dough> (0.0f, 0.0f, 0.75f), 0.75f) << "a clamp at 0 dB";
    EXPECT_EQ (outputOf<Dough> (0.0f, 0.0f, -1.5f), -1.0f);
    EXPECT_EQ (outputOf<InflatorClipper> (0.0f, 0.5f, 2.26f), 0.0f) << "silenced beyond 2.25";
    EXPECT_EQ (outputOf<Boost> (0.0f, 0.3f, 7.0f), 1.0f);
    EXPECT_EQ (outputOf<Foldback> (0.0f, 9.0f, 0.0f), 0.0f);

    // A threshold of silence.
    EXPECT_EQ (outputOf<Dough> (-100.0f, 0.0f, 0.5f), 0.0f);
    EXPECT_EQ (outputOf<TanhClipper> (-120.0f, 0.0f, 0.5f), 0.0f);
}

TEST (Saturator, EnvelopeRisesAtOnceAndFalls40DbInTwoSeconds)
{
    luna::HardClipper curve;
    curve.prepare ({ 8000.0, 16000, 3 });

    // The louder of the first two channels counts, and the curve's input, not its output.
    signals::Buffer buffer (3, 1);
    buffer.setSample (0, 0, 0.25f);
    buffer.setSample (1, 0, -1.0f);
    buffer.setSample (2, 0, 4.0f);
    signals::processInPlace (curve, buffer);
    EXPECT_EQ (curve.envelope, 1.0f);

    auto silence = signals::silence (3, 16000);
    signals::processInPlace (curve, silence);
    EXPECT_NEAR (static_cast<double> (curve.envelope), 0.01, 1.0e-5);

    curve.prepare ({ 8000.0, 16000, 3 });
    EXPECT_EQ (curve.envelope, 0.0f);
}

TEST (AudioEffect, ChangeCountWrapsAfterAThousand)
{
    luna::HardClipper curve;
    EXPECT_EQ (curve.changeCount, -1);
    curve.prepare ({ 48000.0, 1, 1 });
    EXPECT_EQ (curve.changeCount, 0);

    for (auto i = 0; i < 1000; ++i)
        curve.raiseChangeCount();
    EXPECT_EQ (curve.changeCount, 1000);
    curve.raiseChangeCount();
    EXPECT_EQ (curve.changeCount, 0);
}
} // namespace
