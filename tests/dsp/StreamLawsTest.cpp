// Laws for everything that a block of audio goes through: the way a stream is cut into blocks changes
// nothing, nothing allocates, and samples that are no numbers leave no lasting damage.

#include "dsp/HalfBandOversampler.h"
#include "dsp/LevelProcessors.h"
#include "dsp/LUFSMeter.h"
#include "dsp/MultiModeClipper.h"
#include "dsp/SpectrumData.h"
#include "dsp/ThreeBandSplitter.h"
#include "dsp/WaveformHistory.h"
#include "support/AllocationGuard.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
using signals::Buffer;
using Values = std::vector<double>;

constexpr auto sampleRate = 48000.0;
constexpr auto blockSize = 512;

/** Something prepared for two channels at 48 kHz. */
struct Rig
{
    std::function<void (Buffer&)> process;

    /** What it shows of the signal of the last seconds. */
    std::function<Values()> readings = [] { return Values(); };

    /** What it shows that remembers one huge but finite sample for long, and rightly so. */
    std::function<Values()> peaks = [] { return Values(); };
};

template <typename Effect>
std::shared_ptr<Effect> makeEffect (int maximumBlock)
{
    auto effect = std::make_shared<Effect>();
    effect->prepare ({ sampleRate, static_cast<juce::uint32> (maximumBlock), 2 });
    return effect;
}

template <typename Curve>
Rig makeCurve (int maximumBlock)
{
    auto curve = makeEffect<Curve> (maximumBlock);
    curve->setParameter (-6.0f, 0);
    curve->setParameter (0.5f, 1);
    return { .process = [=] (Buffer& buffer) { signals::processInPlace (*curve, buffer); },
             .peaks = [=] { return Values { static_cast<double> (curve->envelope) }; } };
}

Rig makeSection (int maximumBlock)
{
    auto section = makeEffect<MultiModeClipper> (maximumBlock);
    section->setMode (1);
    section->setParameter (-6.0f, 0);
    section->setParameter (3.0f, 2);
    return { .process = [=] (Buffer& buffer) { signals::processInPlace (*section, buffer); },
             .peaks = [=] { return Values { static_cast<double> (section->current->envelope) }; } };
}

Rig makeSplitter (int maximumBlock)
{
    auto splitter = makeEffect<ThreeBandSplitter> (maximumBlock);
    return { .process = [=, bands = juce::Array { 0, 2 }] (Buffer& buffer)
             {
        splitter->split (juce::dsp::AudioBlock<const float> (buffer));
        splitter->mergeBands (juce::dsp::AudioBlock<float> (buffer), bands);
    } };
}

/** By parts, as the chain gives them to it. */
Rig makeOversampler (int)
{
    constexpr auto longest = HalfBandOversampler::longestPart;
    constexpr size_t exponent = 3;
    auto oversampler = std::make_shared<HalfBandOversampler> (2, exponent);
    auto raised = std::make_shared<Buffer> (2, static_cast<int> (longest << exponent));
    return { .process = [=] (Buffer& buffer)
             {
        const juce::dsp::AudioBlock<float> block (buffer);

        for (size_t start = 0; start < block.getNumSamples(); start += longest)
        {
            const auto length = juce::jmin (longest, block.getNumSamples() - start);
            const auto up = juce::dsp::AudioBlock<float> (*raised).getSubBlock (0, length << exponent);
            oversampler->processUp (block.getSubBlock (start, length), up);
            oversampler->processDown (up, block.getSubBlock (start, length));
        }
    } };
}

Rig makeLoudness (int maximumBlock)
{
    auto meter = std::make_shared<kf::LUFSMeter>();
    meter->prepareToPlay (sampleRate, 2, maximumBlock, 30);
    return { .process = [=] (Buffer& buffer) { meter->processBlock (buffer); },
             .readings =
                 [=]
             {
        const auto data = meter->getData();
        const auto all = { data.shortTerm,  data.shortTermMax, data.momentary, data.momentaryMax,
                           data.integrated, data.rangeStart,   data.rangeEnd };
        return Values (all.begin(), all.end());
             } };
}

Rig makeLevels (int)
{
    auto levels = std::make_shared<luna::temp::StereoLevelProcessor>();
    levels->prepare (sampleRate);
    return { .process = [=] (Buffer& buffer)
             { levels->process (juce::dsp::AudioBlock<const float> (buffer)); },
             .readings =
                 [=] {
        return Values { levels->left.getData().rms, levels->right.getData().rms };
             },
             .peaks =
                 [=]
             {
        const auto data = levels->right.getData();
        return Values { data.peak, data.heldPeak, data.maxPeak, data.maxRms };
             } };
}

Rig makeHistory (int)
{
    auto history = std::make_shared<WaveformHistory>();
    history->addTap (0.0f, 0, WaveformTap::filledBars);
    history->addTap (100.0f, 0, WaveformTap::line);
    history->prepare (sampleRate);
    history->setPoints (300);
    return { .process =
                 [=] (Buffer& buffer)
             {
        for (auto tap : { 0, 1 })
            history->push (tap, 2, buffer.getArrayOfReadPointers(), 0, buffer.getNumSamples());
            },
             .readings =
                 [=]
             {
        Values newest;
        for (const auto& tap : history->taps)
            for (auto back = 1; back <= 50; ++back)
                newest.push_back (static_cast<double> (tap.values[(tap.writeIndex + 300 - back) % 300]));
        return newest;
             } };
}

Rig makeSpectrum (int)
{
    auto spectrum = std::make_shared<SpectrumData>();
    spectrum->prepare (sampleRate);
    return { .process =
                 [=] (Buffer& buffer)
             {
        for (auto i = 0; i < buffer.getNumSamples(); ++i)
            spectrum->pushSample (buffer.getSample (0, i));
            },
             .peaks = [=] { return Values (spectrum->magnitudes.begin(), spectrum->magnitudes.end()); } };
}

struct Subject
{
    const char* name;
    Rig (*make) (int maximumBlock);

    /** How far two ways of cutting may be apart; 0 is bit for bit. JUCE's filters flush values below 1e-8 to
        zero at the end of every block. */
    double cutTolerance = 0.0;

    /** Seconds of clean signal after which nothing but the peaks may show, and how nearly: loudness keeps the
        bad block as silence for three seconds and counts in tenths. */
    double secondsToHeal = 0.1;
    double healedTolerance = 0.0;

    /** How far the peaks of two ways of cutting may be apart: an envelope is put together from segments. */
    double peakTolerance = 1.0e-4;
};

/** For the test's name in ctest. */
void PrintTo (const Subject& subject, std::ostream* stream)
{
    *stream << subject.name;
}

const std::vector<Subject> subjects {
    { "Hard", makeCurve<luna::HardClipper> },
    { "SoftI", makeCurve<luna::SoftClipper> },
    { "SoftII", makeCurve<luna::Dough> },
    { "Pressure", makeCurve<luna::InflatorClipper> },
    { "Boost", makeCurve<luna::Boost> },
    { "Foldback", makeCurve<luna::Foldback> },
    { "Tanh", makeCurve<luna::TanhClipper> },
    { "Sin", makeCurve<luna::SinClipper> },
    { "Section", makeSection },
    { "Splitter", makeSplitter, 1.0e-6, 1.0, 1.0e-5 },
    { "Loudness", makeLoudness, 0.0, 4.0, 0.11 },
    { "Levels", makeLevels, 0.0, 0.35, 1.0e-4 },
    { "History", makeHistory, 0.0, 3.0, 1.0e-4 },
    { "Spectrum", makeSpectrum, 0.0, 3.0, 1.0e-6 },
    { "Oversampler", makeOversampler },
};

Values allReadings (const Rig& rig)
{
    auto values = rig.readings();
    const auto peaks = rig.peaks();
    values.insert (values.end(), peaks.begin(), peaks.end());
    return values;
}

void expectNear (const Values& actual, const Values& expected, double tolerance)
{
    ASSERT_EQ (actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i)
        EXPECT_NEAR (actual[i], expected[i], tolerance) << "reading " << i;
}

struct StreamLaws : testing::TestWithParam<Subject>
{
};

TEST_P (StreamLaws, AnyCutGivesWhatOneBlockGives)
{
    const auto& subject = GetParam();
    constexpr auto numSamples = 160000;

    auto expected = signals::noise (2, numSamples, 1.5f);
    const auto input = expected;
    const auto inOneBlock = subject.make (numSamples);
    inOneBlock.process (expected);

    for (const auto& lengths :
         std::vector<std::vector<int>> { { 1 }, { 7 }, { 64 }, { 512 }, { 0, 1, 7, 64, 512, 3 } })
    {
        SCOPED_TRACE (testing::Message() << lengths.size() << " lengths from " << lengths.front());
        auto actual = input;
        const auto inMany = subject.make (blockSize);
        signals::inBlocks (actual, lengths, inMany.process);

        EXPECT_LE (signals::largestDifference (actual, expected), subject.cutTolerance);
        expectNear (inMany.readings(), inOneBlock.readings(), subject.cutTolerance);
        expectNear (inMany.peaks(), inOneBlock.peaks(),
                    juce::jmax (subject.cutTolerance, subject.peakTolerance));
    }
}

TEST_P (StreamLaws, NothingAllocates)
{
    const auto rig = GetParam().make (blockSize);
    auto stream = signals::noise (2, 48000);
    auto calls = 0;

    signals::inBlocks (stream, { 512, 0, 64, 1 },
                       [&] (Buffer& block)
                       {
        const AllocationGuard guard;
        rig.process (block);
        calls += guard.count();
    });

    EXPECT_EQ (calls, 0);
}

/** Runs a quiet block that holds `bad` at `position`, then clean and louder signal, beside a rig without
    `bad`. */
void expectHealing (const Subject& subject, float bad, int position)
{
    SCOPED_TRACE (testing::Message() << bad << " at " << position);
    const auto rig = subject.make (blockSize);
    const auto fresh = subject.make (blockSize);

    auto freshBlock = signals::noise (2, blockSize, 0.1f);
    auto block = freshBlock;
    fresh.process (freshBlock);
    block.setSample (0, position, bad);
    block.setSample (1, position, bad);
    rig.process (block);

    for (auto n = 0; n < subject.secondsToHeal * sampleRate / blockSize; ++n)
    {
        freshBlock = signals::noise (2, blockSize, 1.0f, n);
        block = freshBlock;
        fresh.process (freshBlock);
        rig.process (block);

        ASSERT_EQ (signals::largestDifference (block, block), 0.0) << "not finite in clean block " << n;
        for (auto value : allReadings (rig)) // an empty column of the history is minus infinity
            ASSERT_LE (value, std::numeric_limits<double>::max()) << "clean block " << n;
    }

    EXPECT_LE (signals::largestDifference (block, freshBlock), subject.healedTolerance);
    expectNear (rig.readings(), fresh.readings(), subject.healedTolerance);

    if (const auto isHuge = std::isfinite (bad) && std::abs (bad) > 1.0f; ! isHuge)
        expectNear (rig.peaks(), fresh.peaks(), subject.healedTolerance);
}

struct SelfHealing : StreamLaws
{
};

TEST_P (SelfHealing, BadSamplesLeaveNoLastingDamage)
{
    constexpr auto infinity = std::numeric_limits<float>::infinity();

    for (auto bad :
         { std::numeric_limits<float>::quiet_NaN(), infinity, -infinity, 1.0e20f, 3.0e38f, 1.0e-40f })
        for (auto position : { 0, blockSize / 2, blockSize - 1 })
            expectHealing (GetParam(), bad, position);
}

const auto nameOf = [] (const auto& test) { return std::string (test.param.name); };
INSTANTIATE_TEST_SUITE_P (Dsp, StreamLaws, testing::ValuesIn (subjects), nameOf);

// The oversampler's owner heals it.
INSTANTIATE_TEST_SUITE_P (Dsp, SelfHealing, testing::ValuesIn (subjects.begin(), subjects.end() - 1), nameOf);
} // namespace
