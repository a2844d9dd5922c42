#include "FiniteCheck.h"

#include "dsp/simd/KernelTable.h"

bool isSafelyFinite (const juce::dsp::AudioBlock<const float>& block) noexcept
{
    const auto& kernels = simd::kernels();
    auto isSafe = true;

    for (size_t channel = 0; channel < block.getNumChannels(); ++channel)
        isSafe &=
            kernels.isWithin (block.getChannelPointer (channel), block.getNumSamples(), largestSafeMagnitude);

    return isSafe;
}
