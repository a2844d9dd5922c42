#include "plain/Curves.h"

#include "dsp/MultiModeClipper.h"
#include "dsp/ReferenceCurves.h"
#include "dsp/simd/KernelSignals.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
using signals::Buffer;
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

//======================================================================================================================
// The kernels beside double precision and beside the plain float forms.

struct Offered
{
    const char* name;
    std::unique_ptr<luna::Saturator> (*make)();
    double (*formula) (double magnitude, double thresholdDb, double second);
    std::function<float (float)> (*plain) (float thresholdDb, float second);
};

void PrintTo (const Offered& offered, std::ostream* stream)
{
    *stream << offered.name;
}

class OfferedCurve : public testing::TestWithParam<std::tuple<simd::InstructionSet, Offered>>
{
protected:
    Offered offered = std::get<1> (GetParam());

    bool isKnee() const { return std::string (offered.name) == "SoftI"; }

    std::unique_ptr<luna::Saturator> makeCurve (float thresholdDb, float second) const
    {
        auto curve = offered.make();
        curve->setParameter (second, 1);
        curve->setParameter (thresholdDb, 0);
        return curve;
    }

private:
    kernels::Selection selection { std::get<0> (GetParam()) };
};

TEST_P (OfferedCurve, IsNoLessExactThanItsPlainForm)
{
    for (auto thresholdDb : { 0.0f, -0.1f, -1.0f, -6.0206f, -12.3f, -18.0f })
    {
        for (auto second : { 0.0f, 0.01f, 0.3f, 0.5f, 0.9f, 1.0f })
        {
            second *= isKnee() ? 9.0f : 1.0f;
            const auto curve = makeCurve (thresholdDb, second);
            const auto plain = offered.plain (thresholdDb, second);
            auto worst = 0.0, worstPlain = 0.0;

            for (auto x = 0.0f; x < 4.0f; x += 0.00037f)
            {
                const auto exact = offered.formula (
                    static_cast<double> (x), static_cast<double> (thresholdDb), static_cast<double> (second));
                worst = std::max (worst, std::abs (static_cast<double> (curve->processSample (x)) - exact));
                ASSERT_EQ (curve->processSample (-x), -curve->processSample (x)) << x;
                worstPlain = std::max (worstPlain, std::abs (static_cast<double> (plain (x)) - exact));
            }

            EXPECT_LE (worst, 1.0e-6) << thresholdDb << " dB, " << second;
            EXPECT_LE (worst, 2.0 * worstPlain) << thresholdDb << " dB, " << second;
        }
    }
}

TEST_P (OfferedCurve, MakesTheSameOfASampleWhateverStandsBesideIt)
{
    using Setting = std::pair<float, float>;

    for (const auto& [thresholdDb, second] :
         { Setting { -6.0f, 0.0f }, { -6.0f, 0.5f }, { 0.0f, 1.0f }, { -18.0f, 0.3f }, { -18.0f, 4.5f } })
    {
        if (second > 1.0f && ! isKnee())
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

using Plain = std::function<float (float)>;

const std::vector<Offered> offeredCurves {
    { "Hard", make<luna::HardClipper>, reference::curves::hard,
      [] (float db, float) -> Plain { return reference::Hard { reference::toGain (db) }; } },
    { "SoftI", make<luna::SoftClipper>, reference::curves::softI,
      [] (float db, float knee) -> Plain {
          return reference::SoftOne { db, knee };
      } },
    { "SoftII", make<luna::Dough>, reference::curves::softII,
      [] (float db, float) -> Plain { return reference::SoftTwo { reference::toGain (db) }; } },
    { "Pressure", make<luna::InflatorClipper>, reference::curves::pressure,
      [] (float db, float lift) -> Plain {
          return reference::Pressure { reference::toGain (db), lift };
      } },
    { "Boost", make<luna::Boost>, reference::curves::boost,
      [] (float db, float amount) -> Plain
      {
    const auto exponent = 3.0f + 47.0f * std::pow (1.0f - amount, 1.0f / 0.35f);
    return reference::Boost { reference::toGain (db), exponent };
     } },
    };

INSTANTIATE_TEST_SUITE_P (Kernels, OfferedCurve,
                          testing::Combine (testing::ValuesIn (kernels::supportedSets()),
                                            testing::ValuesIn (offeredCurves)));

class EnvelopeKernel : public kernels::SetAndWidth
{
};

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

TEST_P (EnvelopeKernel, StaysWithTheRecursionThroughALongRelease)
{
    for (const auto rate : { 48000.0, 768000.0 })
    {
        const auto release = reference::Envelope (rate).release;
        reference::Envelope recursion (rate);
        recursion (1.0f, 1.0f);
        auto level = 1.0f;
        const std::vector<float> silence (512);

        for (auto done = 0.0; done < 2.0 * rate; done += 512.0)
        {
            level = simd::kernels().envelope (level, release, silence.data(), silence.data(), 512);
            for (auto i = 0; i < 512; ++i)
                recursion (0.0f, 0.0f);
        }

        EXPECT_NEAR (level, recursion.level, 1.0e-3f * recursion.level) << rate;
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
