#include "Saturator.h"

#include "dsp/simd/KernelTable.h"

#include <cmath>

namespace luna
{

void Saturator::process (const juce::dsp::ProcessContextReplacing<float>& context)
{
    runEnvelope (context.getOutputBlock());
    processBlock (context);
}

void Saturator::prepareEffect (const juce::dsp::ProcessSpec& spec)
{
    updateCoefficients();
    envelope = 0.0f;
    releaseCoefficient = static_cast<float> (
        std::pow (0.01, 1.0 / (static_cast<double> (releaseMs) * spec.sampleRate * 0.001)));
}

void Saturator::runEnvelope (const juce::dsp::AudioBlock<const float>& block) noexcept
{
    if (block.getNumChannels() == 0)
        return;

    const auto* first = block.getChannelPointer (0);
    const auto* second = block.getNumChannels() > 1 ? block.getChannelPointer (1) : first;
    const auto level =
        simd::kernels().envelope (envelope, releaseCoefficient, first, second, block.getNumSamples());

    // An infinite sample would hold the release at infinity for good.
    envelope = std::isfinite (level) ? level : 0.0f;
}

} // namespace luna
