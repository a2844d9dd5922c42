#include "dsp/HalfBandOversampler.h"

#include "dsp/OversamplerBank.h"
#include "dsp/simd/KernelSignals.h"

namespace
{
using juce::dsp::AudioBlock;
using signals::Buffer;

class HalfBand : public kernels::SetAndWidth
{
};

INSTANTIATE_TEST_SUITE_P (Kernels, HalfBand, kernels::setsAndWidths());

TEST_P (HalfBand, EqualsJucesOversamplerBitForBitAtEveryFactorWhereverTheStreamIsCut)
{
    auto bank = makeOversamplerBank (numChannels);

    for (auto exponent = 1; exponent <= 4; ++exponent)
    {
        SCOPED_TRACE (1 << exponent);
        auto& juceForm = *bank[exponent];
        juceForm.initProcessing (512);
        HalfBandOversampler ours (static_cast<size_t> (numChannels), static_cast<size_t> (exponent));
        Buffer up (numChannels, 512 << exponent);

        forEachStream (1500,
                       [&] (const Buffer& signal, const std::vector<int>& lengths)
                       {
            juceForm.reset();
            ours.reset();
            auto expected = signal, actual = signal;
            auto isSameUp = true;

            signals::inBlocks (expected, lengths,
                               [&, start = 0] (Buffer& block) mutable
                               {
                AudioBlock<float> expectedBlock (block);
                const auto expectedUp = juceForm.processSamplesUp (expectedBlock);

                // Ours takes the same block in parts, and brings back JUCE's samples.
                for (size_t at = 0; at < expectedBlock.getNumSamples(); at += 40)
                {
                    const auto length = juce::jmin (size_t { 40 }, expectedBlock.getNumSamples() - at);
                    auto part =
                        AudioBlock<float> (actual).getSubBlock (static_cast<size_t> (start) + at, length);
                    auto partUp = AudioBlock<float> (up).getSubBlock (0, length << exponent);
                    const auto expectedPart = expectedUp.getSubBlock (at << exponent, length << exponent);

                    ours.processUp (part, partUp);
                    for (size_t c = 0; c < part.getNumChannels(); ++c)
                        isSameUp &=
                            std::memcmp (partUp.getChannelPointer (c), expectedPart.getChannelPointer (c),
                                         sizeof (float) * (length << exponent))
                            == 0;
                    ours.processDown (expectedPart, part);
                }

                juceForm.processSamplesDown (expectedBlock);
                start += block.getNumSamples();
            });

            EXPECT_TRUE (isSameUp);
            EXPECT_TRUE (kernels::areSameBits (actual, expected));
        });
    }
}
} // namespace
