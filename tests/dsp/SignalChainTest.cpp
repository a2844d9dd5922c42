#include "dsp/ChainUnderTest.h"
#include "dsp/JuceOversamplers.h"
#include "dsp/simd/KernelSignals.h"
#include "reference/Splitter.h"

namespace
{
constexpr auto multiBand = 1;

using LayoutAndWidth = testing::TestWithParam<std::tuple<int, int>>;

INSTANTIATE_TEST_SUITE_P (SignalChain, LayoutAndWidth,
                          testing::Combine (testing::Range (0, 4), testing::Values (1, 2)));

TEST_P (LayoutAndWidth, EqualTheReferenceForEveryModeAndFactor)
{
    const auto [layout, numChannels] = GetParam();

    for (auto exponent = 0; exponent <= 4; ++exponent)
    {
        for (auto seed = 0; seed < (exponent == 0 ? 30 : 5); ++seed)
        {
            SCOPED_TRACE (testing::Message() << (1 << exponent) << "x, seed " << seed);
            ChainUnderTest chain (numChannels);
            const auto random = reference::randomValues (layout, seed);
            reference::expectReference (chain, expected::with (random, { { "oversampling", exponent } }),
                                        numChannels, 48000.0, exponent == 0 ? 4000 : 1500);
        }
    }
}

TEST_P (LayoutAndWidth, DoNotDependOnHowTheStreamIsCut)
{
    const auto [layout, numChannels] = GetParam();
    const auto signal = signals::noise (numChannels, 6000);

    // At the end of each block JUCE's crossover filter sets states within 1e-8 of zero to zero.
    const auto allowed = layout == multiBand ? 2.0e-6 : 0.0;

    for (auto exponent = 0; exponent <= 4; ++exponent)
    {
        const auto values =
            expected::with (reference::randomValues (layout, 3), { { "oversampling", exponent } });
        const auto render = [&] (ChainUnderTest& chain, const std::vector<int>& lengths)
        {
            chain.waveformTaps.setPoints (300);
            chain.set (values);
            return chain.render (signal, lengths);
        };

        ChainUnderTest whole (numChannels);
        const auto output = render (whole, { 512 });

        for (const auto& lengths :
             std::vector<std::vector<int>> { { 1 }, { 7 }, { 64 }, { 0, 3, 512, 1, 0, 200 } })
        {
            SCOPED_TRACE (testing::Message() << (1 << exponent) << "x, " << testing::PrintToString (lengths));
            ChainUnderTest cut (numChannels);

            EXPECT_LE (signals::largestDifference (render (cut, lengths), output), allowed);
            EXPECT_NEAR (cut.outputLoudness.momentary, whole.outputLoudness.momentary, 10.0 * allowed);

            // An envelope is put together from segments.
            const auto readings = cut.readings(), expectedReadings = whole.readings();
            for (size_t i = 0; i < readings.size(); ++i)
                ASSERT_NEAR (readings[i], expectedReadings[i], 1.0e-4) << i;
        }
    }
}

TEST (SignalChain, StaysStableWithACrossoverAboveHalfTheRate)
{
    const auto tone = signals::sine (2, 16000, 500.0, 8000.0, signals::toGain (-20.0));

    // A bilinear transform of 6 kHz has a negative coefficient at this rate; that of 10 kHz is 2 kHz's.
    for (const auto crossover : { 6000.0, 10000.0 })
    {
        ChainUnderTest chain (2, 8000.0);
        chain.set ({ { "layout", multiBand }, { "crossover_high", crossover } });
        const auto output = chain.render (tone);

        ASSERT_TRUE (signals::isFinite (output)) << crossover;
        EXPECT_LT (signals::toDb (static_cast<double> (output.getMagnitude (0, 16000))), -15.0) << crossover;
        EXPECT_GT (output.getMagnitude (15000, 1000), 0.05f) << crossover;
    }
}

TEST (SignalChain, KeepsTheCrossoversMemoryWhileOtherLayoutsRun)
{
    auto before = signals::noise (2, 700), after = signals::noise (2, 700, 1.0f, 2);

    for (const auto detour : { 0.0, 2.0, 3.0 })
    {
        ChainUnderTest chain, direct, fresh;

        for (auto* each : { &chain, &direct, &fresh })
            each->set (reference::randomValues (multiBand, 4));

        chain.render (before);
        direct.render (before);
        chain.set ({ { "layout", detour } });
        chain.render (signals::noise (2, 900, 1.0f, 3));
        chain.set ({ { "layout", multiBand } });

        const auto expectedOutput = direct.render (after);
        EXPECT_EQ (signals::largestDifference (chain.render (after), expectedOutput), 0.0) << detour;
        EXPECT_GT (signals::largestDifference (fresh.render (after), expectedOutput), 0.001);
    }
}

/** Or one project would sound different on two processors. */
TEST (SignalChain, ForgetsBetweenBlocksWhatIsLeftBelow160DbInTheCrossover)
{
    for (const auto& [level, expected] : { std::pair { 0.9e-8f, false }, { 1.0e-4f, true } })
    {
        ChainUnderTest chain (2);
        chain.set ({ { "layout", multiBand } });
        auto impulse = signals::silence (2, 1);
        impulse.setSample (0, 0, level);
        chain.process (impulse);
        auto tail = signals::silence (2, 1);
        chain.process (tail);
        EXPECT_EQ (tail.getMagnitude (0, 1) > 0.0f, expected) << level;
    }
}

using ChainKernels = kernels::SetAndWidth;

INSTANTIATE_TEST_SUITE_P (Kernels, ChainKernels, kernels::setsAndWidths());

/** At full scale, as the processor's registers do it where what is below the smallest normal number counts as zero;
    compilers differ in what they make of JUCE's loop. */
float clipped (float x)
{
    return std::abs (x) < std::numeric_limits<float>::min() ? std::copysign (0.0f, x)
                                                            : std::clamp (x, -1.0f, 1.0f);
}

/** Renders beside JUCE's oversampler and filters over whole blocks, while the crossover moves. */
void expectJuces (signals::Buffer signal, const std::vector<int>& lengths, int layout, int exponent)
{
    constexpr auto rate = 48000.0;
    constexpr auto blockSize = 512;
    const auto numChannels = signal.getNumChannels();
    ChainUnderTest chain (numChannels, rate, blockSize);
    chain.set ({ { "layout", layout }, { "oversampling", exponent } });
    for (const auto& [id, name] : expected::sections) // oversampler, crossover and ceiling remain
        chain.set ({ { "enable_" + id, 0.0 } });
    const auto bank = makeJuceOversamplers (numChannels);
    auto& oversampler = *bank[exponent];
    oversampler.initProcessing (blockSize);
    reference::Splitter splitter;
    splitter.prepare ({ rate * (1 << exponent), static_cast<juce::uint32> (blockSize << exponent),
                        static_cast<juce::uint32> (numChannels) });
    auto number = 0;

    const juce::ScopedNoDenormals noDenormals;
    signals::inBlocks (
        signal, lengths,
        [&] (signals::Buffer& buffer)
        {
            if (number++ % 16 == 0) // the state stays
            {
                chain.set ({ { "crossover_low", 60 + number % 900 }, { "crossover_high", 9000 - number } });
                splitter.setFrequencies (chain.get ("crossover_low"), chain.get ("crossover_high"));
            }

            signals::Buffer ours;
            ours.makeCopyOf (buffer);
            chain.process (ours);

            if (buffer.getNumSamples() == 0)
                return;

            juce::dsp::AudioBlock<float> block (buffer);
            block.multiplyBy (1.0f); // the input gain: what is denormal becomes zero
            auto up = oversampler.processSamplesUp (block);

            if (layout == 1)
            {
                splitter.split (up);
                splitter.mergeAll (up);
            }

            oversampler.processSamplesDown (block);
            for (auto channel = 0; channel < numChannels; ++channel)
                for (auto i = 0; i < buffer.getNumSamples(); ++i)
                    buffer.setSample (channel, i, clipped (buffer.getSample (channel, i)));

            ASSERT_TRUE (kernels::areSameBits (ours, buffer)) << "block " << number;
        });
}

TEST_P (ChainKernels, PassTheBlockBitForBitAsOversamplerAndFiltersDo)
{
    for (const auto& [name, signal] : kernels::all (numChannels, 1300))
        for (const auto& lengths : kernels::cuts)
            for (auto setting = 0; setting < 10; ++setting)
            {
                const auto layout = setting % 2, exponent = setting / 2;
                SCOPED_TRACE (testing::Message() << name << ", layout " << layout << ", " << (1 << exponent)
                                                 << "x, " << testing::PrintToString (lengths));
                expectJuces (signal, lengths, layout, exponent);
            }
}
} // namespace
