#include "core/PluginUnderTest.h"
#include "dsp/OversamplerBank.h"
#include "dsp/simd/KernelSignals.h"
#include "plain/Splitter.h"

namespace
{
using signals::Buffer;

constexpr auto rate = 48000.0;
constexpr auto blockSize = 512;

class ChainKernels : public kernels::SetAndWidth
{
protected:
    /** With all sections off: oversampler, crossover and ceiling alone. */
    expected::Values passing (int layout, int exponent) const
    {
        expected::Values values { { "layout", layout }, { "oversampling", exponent } };
        for (const auto* section : { "low_band", "mid_band", "high_band", "single", "post" })
            values[std::string ("enable_") + section] = 0.0;
        return values;
    }

    /** The same by JUCE's oversampler and filters over whole blocks. */
    Buffer processPlainly (PluginUnderTest& plugin, Buffer signal, const std::vector<int>& lengths,
                           int layout, int exponent) const
    {
        const auto bank = makeOversamplerBank (numChannels);
        auto& oversampler = *bank[exponent];
        oversampler.initProcessing (blockSize);
        plain::Splitter splitter;
        splitter.prepare ({ rate * (1 << exponent), static_cast<juce::uint32> (blockSize << exponent),
                            static_cast<juce::uint32> (numChannels) });
        splitter.setFrequencies (static_cast<float> (plugin.get ("crossover_low")),
                                 static_cast<float> (plugin.get ("crossover_high")));

        const juce::ScopedNoDenormals noDenormals;
        signals::inBlocks (signal, lengths,
                           [&] (Buffer& buffer)
                           {
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
        });
        return signal;
    }
};

INSTANTIATE_TEST_SUITE_P (Kernels, ChainKernels, kernels::setsAndWidths());

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
                    PluginUnderTest plugin (numChannels, rate, blockSize);
                    plugin.set (passing (layout, exponent));
                    ASSERT_TRUE (
                        kernels::areSameBits (plugin.render (signal, lengths),
                                              processPlainly (plugin, signal, lengths, layout, exponent)));
                }
            }
        }
    }
}
} // namespace
