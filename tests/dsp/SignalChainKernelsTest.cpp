#include "dsp/ChainUnderTest.h"
#include "dsp/JuceOversamplers.h"
#include "dsp/simd/KernelSignals.h"
#include "reference/Splitter.h"

namespace
{
using signals::Buffer;

constexpr auto rate = 48000.0;
constexpr auto blockSize = 512;

using ChainKernels = kernels::SetAndWidth;

INSTANTIATE_TEST_SUITE_P (Kernels, ChainKernels, kernels::setsAndWidths());

/** Renders beside JUCE's oversampler and filters over whole blocks, while the crossover moves. */
void expectJuces (Buffer signal, const std::vector<int>& lengths, int layout, int exponent)
{
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
    signals::inBlocks (signal, lengths,
                       [&] (Buffer& buffer)
                       {
        if (number++ % 16 == 0) // the state stays
        {
            chain.set ({ { "crossover_low", 60 + number % 900 }, { "crossover_high", 9000 - number } });
            splitter.setFrequencies (chain.get ("crossover_low"), chain.get ("crossover_high"));
        }

        Buffer ours;
        ours.makeCopyOf (buffer);
        chain.process (ours);

        if (buffer.getNumSamples() == 0)
            return;

        juce::dsp::AudioBlock<float> block (buffer);
        auto up = oversampler.processSamplesUp (block);

        if (layout == 1)
        {
            splitter.split (up);
            splitter.mergeAll (up);
        }

        oversampler.processSamplesDown (block);
        for (auto channel = 0; channel < numChannels; ++channel)
            juce::FloatVectorOperations::clip (buffer.getWritePointer (channel),
                                               buffer.getReadPointer (channel), -1.0f, 1.0f,
                                               buffer.getNumSamples());

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
