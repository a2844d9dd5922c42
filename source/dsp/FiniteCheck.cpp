#include "FiniteCheck.h"

#include <cmath>

bool isSafelyFinite (const juce::dsp::AudioBlock<const float>& block) noexcept
{
    // Counted rather than left at the first find, so that the loop vectorises.
    auto unsafe = 0;

    for (size_t channel = 0; channel < block.getNumChannels(); ++channel)
    {
        const auto* samples = block.getChannelPointer (channel);

        for (size_t i = 0; i < block.getNumSamples(); ++i)
            unsafe += std::abs (samples[i]) <= largestSafeMagnitude ? 0 : 1;
    }

    return unsafe == 0;
}
