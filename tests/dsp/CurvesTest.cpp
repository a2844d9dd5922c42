#include "dsp/MultiModeClipper.h"
#include "dsp/ReferenceCurves.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
using signals::toGain;

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

TEST_P (EachCurve, FollowsItsFormulaAndIsOddInSamplesAndBlocks)
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
            signals::Buffer buffer (1, static_cast<int> (inputs.size()));
            buffer.copyFrom (0, 0, inputs.data(), buffer.getNumSamples());
            signals::processInPlace (*curve, buffer);
            const auto* inBlock = buffer.getReadPointer (0);

            for (auto x : inputs)
            {
                const auto y = curve->processSample (x);
                ASSERT_EQ (*inBlock++, y) << "x " << x;
                const auto expected = GetParam().formula (
                    static_cast<double> (x), static_cast<double> (thresholdDb), static_cast<double> (second));

                ASSERT_NEAR (static_cast<double> (y), expected, 2.0e-6)
                    << "x " << x << ", threshold " << thresholdDb << " dB, second control " << second;
                ASSERT_EQ (curve->processSample (-x), -y) << "x " << x;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P (
    Curves, EachCurve,
    testing::Values (
        Curve { "Hard", make<luna::HardClipper>, reference::curves::hard, { 0.0f, 1.0f } },
        Curve { "SoftI", make<luna::SoftClipper>, reference::curves::softI, { 0.0f, 0.1f, 4.5f, 9.0f } },
        Curve { "SoftII", make<luna::Dough>, reference::curves::softII, { 0.0f } },
        Curve { "Pressure",
                make<luna::InflatorClipper>,
                reference::curves::pressure,
                { 0.0f, 0.3f, 0.5f, 1.0f } },
        Curve { "Boost", make<luna::Boost>, reference::curves::boost, { 0.0f, 0.2f, 0.7f, 1.0f } },
        Curve { "Foldback", make<luna::Foldback>, reference::curves::foldback, { 0.0f, 0.1f, 4.5f, 9.0f } },
        Curve { "Tanh", make<luna::TanhClipper>, reference::curves::tanh, { 0.0f, 0.4f, 1.0f } },
        Curve { "Sin", make<luna::SinClipper>, reference::curves::sin, { 0.0f, 0.4f, 1.0f } }),
    [] (const auto& test) { return std::string (test.param.name); });

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

} // namespace
