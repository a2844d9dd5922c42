#include "SignalChain.h"

#include "common/Decibels.h"
#include "dsp/FiniteCheck.h"

#include <cmath>

namespace
{
using Block = juce::dsp::AudioBlock<float>;

/** What the host gets in place of samples that are no numbers: silence. */
void silenceNonFiniteSamples (Block& block)
{
    for (size_t channel = 0; channel < block.getNumChannels(); ++channel)
    {
        auto* samples = block.getChannelPointer (channel);

        for (size_t i = 0; i < block.getNumSamples(); ++i)
            if (! std::isfinite (samples[i]))
                samples[i] = 0.0f;
    }
}
} // namespace

//======================================================================================================================
// Preparation

juce::dsp::ProcessSpec SignalChain::getSpec (int factorExponent) const
{
    const auto factor = 1 << factorExponent;
    return { factor * sampleRate, static_cast<juce::uint32> (factor * blockSize),
             static_cast<juce::uint32> (numChannels) };
}

void SignalChain::prepare (double newSampleRate, int maximumBlockSize, int newNumChannels)
{
    sampleRate = newSampleRate;
    blockSize = maximumBlockSize;
    numChannels = newNumChannels;

    oversamplers.clear();
    for (auto i = 0; i <= Oversampling::largestExponent; ++i)
        oversamplers.emplace_back (static_cast<size_t> (numChannels), static_cast<size_t> (i));

    oversampledPart.setSize (numChannels, static_cast<int> (oversampledPartLength));
    bandsToMerge.ensureStorageAllocated (static_cast<int> (numBands));

    // A later change of the factor, which comes on the audio thread, finds its memory.
    const auto spec = getSpec (Oversampling::largestExponent);
    parts.splitter.prepare (spec);

    for (auto* buffer : { &parts.midBuffer, &parts.sideBuffer })
        buffer->setSize (1, static_cast<int> (spec.maximumBlockSize), true, true, true);
}

void SignalChain::setFactor (int newExponent)
{
    exponent = newExponent;
    const auto spec = getSpec (exponent);
    const auto maximumSize = static_cast<int> (spec.maximumBlockSize);

    for (auto* section : parts.sections)
        section->prepare (spec);

    parts.splitter.prepare (spec);

    for (auto* buffer : { &parts.midBuffer, &parts.sideBuffer })
    {
        if (buffer->getNumChannels() != 1 || buffer->getNumSamples() != maximumSize)
        {
            buffer->setSize (1, maximumSize, false, false, true);
            buffer->clear();
        }
    }
}

//======================================================================================================================
// The block

void SignalChain::process (Block block, const Settings& settings)
{
    block.multiplyBy (decibels::toGain (settings.inputGainDb));

    // In parts that stay in the processor's first cache from one stage to the next.
    const auto longest = oversampledPartLength >> exponent;
    auto isFinite = true;

    for (size_t start = 0; start < block.getNumSamples(); start += longest)
    {
        auto part = block.getSubBlock (start, juce::jmin (longest, block.getNumSamples() - start));
        isFinite &= processPart (part, settings);
    }

    if (settings.layout == Layout::multiBand)
        parts.splitter.finishBlock();

    // Its filters and its delay would hold on to what is not a number.
    if (! isFinite)
        oversamplers[static_cast<size_t> (exponent)].reset();

    parts.ceiling.processBlock (juce::dsp::ProcessContextReplacing<float> (block));

    if (! isFinite)
        silenceNonFiniteSamples (block);
}

/** Returns whether all was made of numbers, at either rate. */
bool SignalChain::processPart (Block& part, const Settings& settings)
{
    if (exponent == 0)
    {
        const auto isFinite = isSafelyFinite (part);
        runSections (part, settings);
        return isSafelyFinite (part) && isFinite;
    }

    auto& oversampler = oversamplers[static_cast<size_t> (exponent)];
    auto oversampled = Block (oversampledPart)
                           .getSubsetChannelBlock (0, part.getNumChannels())
                           .getSubBlock (0, part.getNumSamples() << exponent);

    oversampler.processUp (part, oversampled);
    auto isFinite = isSafelyFinite (oversampled);

    runSections (oversampled, settings);
    isFinite &= isSafelyFinite (oversampled);

    oversampler.processDown (oversampled, part);
    return isSafelyFinite (part) && isFinite;
}

void SignalChain::runSection (size_t row, Block block)
{
    auto& section = *parts.sections[row];

    if (section.enabled)
        section.process (juce::dsp::ProcessContextReplacing<float> (block));
}

void SignalChain::runSections (Block& block, const Settings& settings)
{
    switch (settings.layout)
    {
        case Layout::multiBand: runMultiBand (block, settings); break;
        case Layout::midSide: runMidSide (block); break;
        case Layout::leftRight: runLeftRight (block); break;
        default: runSection (SectionRow::single, block); break;
    }

    runSection (SectionRow::post, block);
}

void SignalChain::runMultiBand (Block& block, const Settings& settings)
{
    auto& splitter = parts.splitter;
    splitter.splitPart (block);

    const std::array bands { &splitter.lowBlock, &splitter.midBlock, &splitter.highBlock };

    for (size_t band = 0; band < numBands; ++band)
        runSection (band, *bands[band]);

    bandsToMerge.clearQuick();

    if (settings.soloBand < Solo::none)
    {
        // A soloed band is heard even if it is muted.
        bandsToMerge.add (settings.soloBand);
    }
    else
    {
        for (size_t band = 0; band < numBands; ++band)
            if (! settings.isBandMuted[band])
                bandsToMerge.add (static_cast<int> (band));
    }

    // With every band muted the list is empty, which merges all of them: three mutes pass the whole signal.
    splitter.mergeBands (block, bandsToMerge);
}

void SignalChain::runMidSide (Block& block)
{
    const auto numSamples = block.getNumSamples();
    parts.midBlock = Block (parts.midBuffer).getSubBlock (0, numSamples);
    parts.sideBlock = Block (parts.sideBuffer).getSubBlock (0, numSamples);

    const auto isStereo = block.getNumChannels() == 2;
    auto* mid = parts.midBlock.getChannelPointer (0);
    auto* side = parts.sideBlock.getChannelPointer (0);

    if (isStereo)
    {
        const auto* left = block.getChannelPointer (0);
        const auto* right = block.getChannelPointer (1);

        for (size_t i = 0; i < numSamples; ++i)
        {
            mid[i] = (left[i] + right[i]) * 0.5f;
            side[i] = (left[i] - right[i]) * 0.5f;
        }
    }

    // A mono block stays as it is; the sections then run on what the buffers hold.
    runSection (SectionRow::sideChannel, parts.sideBlock);
    runSection (SectionRow::midChannel, parts.midBlock);

    if (isStereo)
    {
        auto* left = block.getChannelPointer (0);
        auto* right = block.getChannelPointer (1);

        for (size_t i = 0; i < numSamples; ++i)
        {
            left[i] = mid[i] + side[i];
            right[i] = mid[i] - side[i];
        }
    }
}

void SignalChain::runLeftRight (Block& block)
{
    if (block.getNumChannels() == 0)
        return;

    // A mono block goes through both sections in series.
    runSection (SectionRow::leftChannel, block.getSingleChannelBlock (0));
    runSection (SectionRow::rightChannel, block.getSingleChannelBlock (block.getNumChannels() > 1 ? 1 : 0));
}
