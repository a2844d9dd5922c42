#include "dsp/simd/KernelSignals.h"
#include "reference/CurveTable.h"

#include <typeinfo>

namespace reference
{
/** For the test's name in ctest. */
static void PrintTo (const Curve& curve, std::ostream* stream)
{
    *stream << curve.name;
}
} // namespace reference

namespace
{
using reference::Curve;
using signals::Buffer;

TEST (CurveTable, HoldsTheCurveOfEveryModeUnderItsNumberAndName)
{
    for (const auto& mode : MultiModeClipper().modes)
    {
        const auto& row = reference::curveOfMode (mode.id);
        const auto curve = row.make (0.0f, 0.0f);
        const auto &ours = *mode.saturator, &listed = *curve;
        EXPECT_EQ (mode.name.removeCharacters (" "), row.name);
        EXPECT_EQ (typeid (ours), typeid (listed));
    }
}

class EachCurve : public testing::TestWithParam<std::tuple<simd::InstructionSet, Curve>>
{
protected:
    Curve description = std::get<1> (GetParam());

private:
    kernels::Selection selection { std::get<0> (GetParam()) };
};

TEST_P (EachCurve, IsOddAndNoLessExactThanItsFormulaInSinglePrecision)
{
    std::vector<float> inputs;
    for (auto x = 0.0f; x < 4.0f; x += 0.00037f)
        inputs.push_back (x);
    for (auto db = 0.0; db > -99.0; db -= 0.7)
        inputs.push_back (static_cast<float> (signals::toGain (db)));

    for (auto thresholdDb : { 0.0f, -0.05f, -0.1f, -1.0f, -6.0206f, -12.3f, -18.0f })
    {
        for (auto second : { 0.0f, 0.01f, 0.3f, 0.5f, 0.9f, 1.0f })
        {
            second *= description.most;
            const auto curve = description.make (thresholdDb, second);
            std::vector<double> exact (inputs.begin(), inputs.end());
            description.exact (static_cast<double> (thresholdDb), static_cast<double> (second)) (exact);
            auto plain = inputs;
            description.plain (thresholdDb, second) (plain);
            auto worst = 0.0, worstPlain = 0.0;

            for (size_t i = 0; i < inputs.size(); ++i)
            {
                const auto x = inputs[i];
                const auto y = curve->processSample (x);
                ASSERT_EQ (curve->processSample (-x), -y) << x;
                worst = std::max (worst, std::abs (static_cast<double> (y) - exact[i]));
                worstPlain = std::max (worstPlain, std::abs (static_cast<double> (plain[i]) - exact[i]));
            }

            EXPECT_LE (worst, 2.0e-6) << thresholdDb << " dB, " << second;
            EXPECT_LE (worst, 3.0 * worstPlain) << thresholdDb << " dB, " << second;
        }
    }
}

TEST_P (EachCurve, MakesTheSameOfASampleWhateverStandsBesideIt)
{
    using Setting = std::pair<float, float>;

    for (const auto& [thresholdDb, second] :
         { Setting { -6.0f, 0.0f }, { -6.0f, 0.5f }, { 0.0f, 1.0f }, { -18.0f, 0.3f }, { -18.0f, 4.5f } })
    {
        if (second > description.most)
            continue;

        const auto curve = description.make (thresholdDb, second);

        for (const auto& [name, signal] : kernels::all (1, 777))
        {
            SCOPED_TRACE (testing::Message() << name << ", " << thresholdDb << " dB, " << second);
            auto block = signal, alone = signal, backwards = signal;
            signals::processInPlace (*curve, block);
            backwards.reverse (0, 777);
            signals::processInPlace (*curve, backwards);
            backwards.reverse (0, 777);
            for (auto i = 0; i < 777; ++i)
                alone.setSample (0, i, curve->processSample (signal.getSample (0, i)));

            EXPECT_TRUE (kernels::areSameBits (block, alone));
            EXPECT_TRUE (kernels::areSameBits (block, backwards));
        }
    }
}

INSTANTIATE_TEST_SUITE_P (Kernels, EachCurve,
                          testing::Combine (testing::ValuesIn (kernels::supportedSets()),
                                            testing::ValuesIn (reference::curves)));

using EnvelopeKernel = kernels::SetAndWidth;

INSTANTIATE_TEST_SUITE_P (Kernels, EnvelopeKernel, kernels::setsAndWidths());

TEST_P (EnvelopeKernel, FollowsTheRecursionWithinAThousandth)
{
    for (const auto rate : { 8000.0, 48000.0, 768000.0 })
    {
        forEachStream (20000,
                       [&] (Buffer signal, const std::vector<int>& lengths)
                       {
                           luna::HardClipper curve;
                           curve.prepare ({ rate, 512, 2 });
                           reference::Envelope recursion (rate);
                           EXPECT_EQ (curve.releaseCoefficient, recursion.release);

                           signals::inBlocks (signal, lengths,
                                              [&] (Buffer& block)
                                              {
                                                  for (auto i = 0; i < block.getNumSamples(); ++i)
                                                      recursion (block.getSample (0, i),
                                                                 block.getSample (numChannels - 1, i));

                                                  signals::processInPlace (curve, block);
                                                  ASSERT_NEAR (curve.envelope, recursion.level,
                                                               1.0e-3f * recursion.level + 1.0e-37f);
                                              });
                       });
    }
}
} // namespace
