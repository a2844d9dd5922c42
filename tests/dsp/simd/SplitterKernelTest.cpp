#include "dsp/simd/KernelSignals.h"
#include "dsp/ThreeBandSplitter.h"
#include "plain/Splitter.h"

namespace
{
using juce::dsp::AudioBlock;
using signals::Buffer;

class SplitterKernel : public kernels::SetAndWidth
{
};

INSTANTIATE_TEST_SUITE_P (Kernels, SplitterKernel, kernels::setsAndWidths());

/** The first samples of a band's buffer. */
Buffer part (const Buffer& band, int length)
{
    Buffer copy (band.getNumChannels(), length);
    for (auto channel = 0; channel < copy.getNumChannels(); ++channel)
        copy.copyFrom (channel, 0, band, channel, 0, length);
    return copy;
}

TEST_P (SplitterKernel, EqualsTheFiltersBitForBitWhereverTheStreamIsCut)
{
    forEachStream (6000,
                   [&] (Buffer signal, const std::vector<int>& lengths)
                   {
        ThreeBandSplitter splitter;
        plain::Splitter filters;
        const juce::dsp::ProcessSpec spec { numChannels == 1 ? 192000.0 : 44100.0, 512,
                                            static_cast<juce::uint32> (numChannels) };
        splitter.prepare (spec);
        filters.prepare (spec);
        auto block = 0;

        signals::inBlocks (signal, lengths,
                           [&] (Buffer& buffer)
                           {
            if (block++ % 16 == 0) // the state stays
            {
                const auto high = 2000.0f + 50.0f * static_cast<float> (block % 160);
                splitter.setFrequencies (0.1f * high, high);
                filters.setFrequencies (0.1f * high, high);
            }

            splitter.split (AudioBlock<const float> (buffer));
            filters.split (AudioBlock<const float> (buffer));

            for (const auto& [ours, plain] : { std::pair { &splitter.lowBuffer, &filters.low },
                                               { &splitter.midBuffer, &filters.mid },
                                               { &splitter.highBuffer, &filters.high },
                                               { &splitter.restBuffer, &filters.rest } })
                ASSERT_TRUE (kernels::areSameBits (part (*ours, buffer.getNumSamples()),
                                                   part (*plain, buffer.getNumSamples())))
                    << "block " << block;
        });
    });
}
} // namespace
