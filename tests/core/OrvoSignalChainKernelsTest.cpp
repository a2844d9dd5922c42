#include "core/PluginUnderTest.h"
#include "dsp/OversamplerBank.h"
#include "dsp/simd/KernelSignals.h"
#include "plain/Splitter.h"

namespace
{
using signals::Buffer;

constexpr auto rate = 48000.0;
constexpr auto blockSize = 512;

/** With all sections off: oversampler, crossover and ceiling alone. */
expected::Values passing (int layout, int exponent)
{
    expected::Values values { { "layout", layout }, { "oversampling", exponent } };
    for (const auto* section : { "low_band", "mid_band", "high_band", "single", "post" })
        values[std::string ("enable_") + section] = 0.0;
    return values;
}

using ChainKernels = kernels::SetAndWidth;

INSTANTIATE_TEST_SUITE_P (Kernels, ChainKernels, kernels::setsAndWidths());

/** Renders beside JUCE's oversampler and filters over whole blocks, while the crossover moves. */
void expectJuces (Buffer signal, const std::vector<int>& lengths, int layout, int exponent)
{
    const auto numChannels = signal.getNumChannels();
    PluginUnderTest plugin (numChannels, rate, blockSize);
    plugin.set (passing (layout, exponent));
    const auto bank = makeOversamplerBank (numChannels);
    auto& oversampler = *bank[exponent];
    oversampler.initProcessing (blockSize);
    plain::Splitter splitter;
    splitter.prepare ({ rate * (1 << exponent), static_cast<juce::uint32> (blockSize << exponent),
                        static_cast<juce::uint32> (numChannels) });
    auto number = 0;

    const juce::ScopedNoDenormals noDenormals;
    signals::inBlocks (signal, lengths,
                       [&] (Buffer& buffer)
                       {
        if (number++ % 16 == 0) // the state stays
        {
            plugin.set ({ { "crossover_low", 60 + number % 900 }, { "crossover_high", 9000 - number } });
            splitter.setFrequencies (static_cast<float> (plugin.get ("crossover_low")),
                                     static_cast<float> (plugin.get ("crossover_high")));
        }

        Buffer ours;
        ours.makeCopyOf (buffer);
        plugin.process (ours);

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
    {
        for (auto layout = 0; layout < 2; ++layout)
        {
            for (auto exponent = 0; exponent <= 4; ++exponent)
            {
                for (const auto& lengths : kernels::cuts)
                {
                    SCOPED_TRACE (testing::Message()
                                  << name << ", layout " << layout << ", " << (1 << exponent) << "x, "
                                  << testing::PrintToString (lengths));
                    expectJuces (signal, lengths, layout, exponent);
                }
            }
        }
    }
}
} // namespace
