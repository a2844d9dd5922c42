#include "dsp/LevelProcessors.h"
#include "dsp/simd/KernelSignals.h"
#include "reference/Loudness.h"

#include <tuple>

namespace
{
using signals::Buffer;

using MeterKernels = kernels::SetAndWidth;

INSTANTIATE_TEST_SUITE_P (Kernels, MeterKernels, kernels::setsAndWidths());

TEST_P (MeterKernels, KeepTheLoudnessFiltersAndBinsOfThePlainFormBitForBit)
{
    forEachStream (5000,
                   [&] (const Buffer& stream, const std::vector<int>& lengths)
                   {
                       for (const auto isHuge : { false, true }) // such a sample takes the guarded way
                       {
                           auto signal = stream;
                           if (isHuge)
                               signal.setSample (numChannels - 1, 100, 3.0e7f);

                           kf::LUFSMeter meter;
                           meter.prepareToPlay (44100.0, numChannels, 512, 30);
                           reference::Loudness plain (meter);

                           signals::inBlocks (signal, lengths,
                                              [&] (Buffer& block)
                                              {
                                                  meter.processBlock (block);
                                                  plain.processBlock (block);
                                                  ASSERT_EQ (meter.currentBlockIsSilent, plain.isSilent);
                                              });

                           EXPECT_EQ (meter.bins, plain.bins);
                           EXPECT_EQ (meter.preFilter.z1, plain.pre.z1);
                           EXPECT_EQ (meter.preFilter.z2, plain.pre.z2);
                           EXPECT_EQ (meter.revisedLowFrequencyBCurveFilter.z1, plain.low.z1);
                           EXPECT_EQ (meter.revisedLowFrequencyBCurveFilter.z2, plain.low.z2);
                       }
                   });
}

/** Everything that a record remembers or shows. */
auto stateOf (const LevelChannel& c)
{
    return std::tuple (c.peak, c.heldPeak, c.maxPeak, c.peakLevel, c.heldLevel, c.holdCounter, c.holdValue,
                       c.rmsSum, c.rmsIndex, c.rmsSumSnapshot, c.samplesSinceRecalculation, c.maxRmsSum,
                       std::vector<float> (c.squares.begin(), c.squares.end()));
}

TEST_P (MeterKernels, KeepTheLevelsOfThePlainFormBitForBit)
{
    // At this rate the window wraps, its sum is rebuilt and the held peak falls again and again.
    forEachStream (4000,
                   [&] (Buffer signal, const std::vector<int>& lengths)
                   {
                       luna::temp::StereoLevelProcessor levels, plain;
                       levels.prepare (777.0);
                       plain.prepare (777.0);
                       auto block = 0;

                       signals::inBlocks (
                           signal, lengths,
                           [&] (Buffer& buffer)
                           {
                               levels.process (juce::dsp::AudioBlock<const float> (buffer));

                               for (auto i = 0; i < buffer.getNumSamples(); ++i)
                               {
                                   plain.left.processSample (std::abs (buffer.getSample (0, i)));
                                   plain.right.processSample (
                                       std::abs (buffer.getSample (numChannels - 1, i)));
                               }

                               if (++block % 5 == 0) // as widgets and parameter changes do, in between
                               {
                                   for (auto* each : { &levels, &plain })
                                   {
                                       each->getMaxPeak();
                                       each->resetMaxima();
                                   }
                               }

                               ASSERT_EQ (stateOf (levels.left), stateOf (plain.left)) << "block " << block;
                               ASSERT_EQ (stateOf (levels.right), stateOf (plain.right)) << "block " << block;
                           });
                   });
}
} // namespace
