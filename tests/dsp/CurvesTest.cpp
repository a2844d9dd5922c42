#include "plain/Curves.h"

#include "dsp/MultiModeClipper.h"
#include "dsp/simd/KernelSignals.h"

namespace
{
using signals::Buffer;

template <typename Number>
using Form = std::function<Number (Number)>;

struct Curve
{
    const char* name;

    /** The greatest value of its second control. */
    float most;

    std::unique_ptr<luna::Saturator> (*make)();
    Form<double> (*exact) (double thresholdDb, double second);
    Form<float> (*plain) (float thresholdDb, float second);
};

/** For the test's name in ctest. */
void PrintTo (const Curve& curve, std::ostream* stream)
{
    *stream << curve.name;
}

template <typename Saturator, template <typename> class Formula>
Curve describe (const char* name, float most = 1.0f)
{
    return { name, most, []() -> std::unique_ptr<luna::Saturator> { return std::make_unique<Saturator>(); },
             [] (double db, double second) -> Form<double> { return Formula<double> (db, second); },
             [] (float db, float second) -> Form<float> { return Formula<float> (db, second); } };
}

class EachCurve : public testing::TestWithParam<std::tuple<simd::InstructionSet, Curve>>
{
protected:
    Curve description = std::get<1> (GetParam());

    std::unique_ptr<luna::Saturator> makeCurve (float thresholdDb, float second) const
    {
        auto curve = description.make();
        curve->setParameter (second, 1);
        curve->setParameter (thresholdDb, 0);
        return curve;
    }

private:
    kernels::Selection selection { std::get<0> (GetParam()) };
};

class OfferedCurve : public EachCurve
{
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
            const auto curve = makeCurve (thresholdDb, second);
            const auto exact =
                description.exact (static_cast<double> (thresholdDb), static_cast<double> (second));
            const auto plain = description.plain (thresholdDb, second);
            auto worst = 0.0, worstPlain = 0.0;

            for (auto x : inputs)
            {
                const auto expected = exact (static_cast<double> (x));
                const auto y = curve->processSample (x);
                ASSERT_EQ (curve->processSample (-x), -y) << x;
                worst = std::max (worst, std::abs (static_cast<double> (y) - expected));
                worstPlain = std::max (worstPlain, std::abs (static_cast<double> (plain (x)) - expected));
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

        const auto curve = makeCurve (thresholdDb, second);

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

TEST_P (OfferedCurve, KeepsWhatIsNoNumberAndTakesInfinityForALoudSample)
{
    constexpr auto infinity = std::numeric_limits<float>::infinity();
    const auto curve = makeCurve (-6.0f, 0.5f);
    signals::Buffer buffer (1, 11);

    for (auto i = 0; i < 11; ++i)
        buffer.setSample (0, i, i == 3 ? std::numeric_limits<float>::quiet_NaN() : i == 9 ? -infinity : 0.1f);

    signals::processInPlace (*curve, buffer);

    for (auto i = 0; i < 11; ++i)
        EXPECT_EQ (std::isnan (buffer.getSample (0, i)), i == 3) << i;

    EXPECT_EQ (buffer.getSample (0, 9), curve->processSample (-1.0e9f));
}

const std::vector<Curve> curves { describe<luna::HardClipper, reference::Hard> ("Hard"),
                                  describe<luna::SoftClipper, reference::SoftOne> ("SoftI", 9.0f),
                                  describe<luna::Dough, reference::SoftTwo> ("SoftII"),
                                  describe<luna::InflatorClipper, reference::Pressure> ("Pressure"),
                                  describe<luna::Boost, reference::Boost> ("Boost"),
                                  describe<luna::Foldback, reference::Foldback> ("Foldback", 9.0f),
                                  describe<luna::TanhClipper, reference::Tanh> ("Tanh"),
                                  describe<luna::SinClipper, reference::Sine> ("Sin") };

INSTANTIATE_TEST_SUITE_P (Kernels, EachCurve,
                          testing::Combine (testing::ValuesIn (kernels::supportedSets()),
                                            testing::ValuesIn (curves)));

// Those of the menu.
INSTANTIATE_TEST_SUITE_P (Kernels, OfferedCurve,
                          testing::Combine (testing::ValuesIn (kernels::supportedSets()),
                                            testing::ValuesIn (curves.begin(), curves.begin() + 5)));

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
                    recursion (block.getSample (0, i), block.getSample (numChannels - 1, i));

                signals::processInPlace (curve, block);
                ASSERT_NEAR (curve.envelope, recursion.level, 1.0e-3f * recursion.level + 1.0e-37f);
            });
        });
    }
}

TEST_P (EnvelopeKernel, TakesWhatIsNoNumberForSilence)
{
    const auto signal = signals::noise (2, 203);

    for (const auto place : { 0, 63, 64, 130, 202 })
    {
        for (const auto& channels : { std::vector { 0 }, { 1 }, { 0, 1 } })
        {
            auto silent = signal, damaged = signal;
            for (const auto channel : channels)
            {
                silent.setSample (channel, place, 0.0f);
                damaged.setSample (channel, place, std::numeric_limits<float>::quiet_NaN());
            }

            const auto run = [] (const Buffer& buffer) {
                return simd::kernels().envelope (0.3f, 0.99f, buffer.getReadPointer (0),
                                                 buffer.getReadPointer (1), 203);
            };
            EXPECT_EQ (run (damaged), run (silent)) << place;
        }
    }
}

TEST_P (EnvelopeKernel, RisesAtOnceAndFalls40DbInTwoSeconds)
{
    for (const auto rate : { 8000, 48000 })
    {
        luna::HardClipper curve;
        curve.prepare ({ static_cast<double> (rate), 512, 3 });

        // The louder of the first two channels counts, and the curve's input, not its output.
        Buffer buffer (3, 1);
        buffer.setSample (0, 0, 0.25f);
        buffer.setSample (1, 0, -1.0f);
        buffer.setSample (2, 0, 4.0f);
        signals::processInPlace (curve, buffer);
        EXPECT_EQ (curve.envelope, 1.0f);

        auto silence = signals::silence (3, 2 * rate);
        signals::inBlocks (silence, { 512 }, [&] (Buffer& block) { signals::processInPlace (curve, block); });
        EXPECT_NEAR (static_cast<double> (curve.envelope), 0.01, 5.0e-5) << rate;

        curve.prepare ({ 8000.0, 512, 3 });
        EXPECT_EQ (curve.envelope, 0.0f);
    }
}
} // namespace
