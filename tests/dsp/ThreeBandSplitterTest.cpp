#include "dsp/ThreeBandSplitter.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
using signals::Buffer;

TEST (ThreeBandSplitter, MergesTheListedBands)
{
    ThreeBandSplitter splitter;
    splitter.prepare ({ 48000.0, 512, 2 });
    splitter.setFrequencies (300.0f, 4000.0f);
    const auto input = signals::noise (2, 512);
    const auto before = signals::noise (2, 512, 0.5f, 9);
    splitter.split (juce::dsp::AudioBlock<const float> (input));

    const auto merged = [&] (const juce::Array<int>& bands)
    {
        auto output = before;
        splitter.mergeBands (juce::dsp::AudioBlock<float> (output), bands);
        return output;
    };

    const auto sumOf = [&] (const juce::Array<int>& bands)
    {
        auto sum = signals::silence (2, 512);
        for (auto band : bands)
            for (auto channel : { 0, 1 })
                sum.addFrom (channel, 0, merged ({ band }), channel, 0, 512);
        return sum;
    };

    auto all = before;
    splitter.mergeAll (juce::dsp::AudioBlock<float> (all));

    EXPECT_GT (signals::largestDifference (merged ({ 0 }), merged ({ 2 })), 0.1);
    EXPECT_EQ (signals::largestDifference (all, sumOf ({ 0, 1, 2 })), 0.0);
    EXPECT_EQ (signals::largestDifference (merged ({}), all), 0.0) << "an empty list stands for all";
    EXPECT_EQ (signals::largestDifference (merged ({ 0, 2 }), sumOf ({ 0, 2 })), 0.0);
    EXPECT_EQ (signals::largestDifference (merged ({ 2, 1, 7, 0 }), sumOf ({ 2, 1 })), 0.0) << "ends at 7";
    EXPECT_EQ (signals::largestDifference (merged ({ -1, 0 }), before), 0.0) << "ends before it writes";
}
} // namespace
