#include "BufferLimits.h"

#include "dsp/simd/KernelTable.h"

#include <cmath>

bool isWithin (const juce::AudioBuffer<float>& buffer, float limit, int start, int length) noexcept
{
    for (auto channel = 0; channel < buffer.getNumChannels(); ++channel)
        if (! simd::kernels().isWithin (buffer.getReadPointer (channel, start), static_cast<size_t> (length),
                                        limit))
            return false;

    return true;
}

bool isWithin (const juce::AudioBuffer<float>& buffer, float limit) noexcept
{
    return isWithin (buffer, limit, 0, buffer.getNumSamples());
}

bool isSilent (const juce::AudioBuffer<float>& buffer) noexcept
{
    constexpr auto slice = 64;
    const auto limit = std::nextafter (1.0e-12f, 0.0f);

    if (buffer.hasBeenCleared())
        return true;

    for (auto start = 0; start < buffer.getNumSamples(); start += slice)
        if (! isWithin (buffer, limit, start, juce::jmin (slice, buffer.getNumSamples() - start)))
            return false;

    return true;
}
