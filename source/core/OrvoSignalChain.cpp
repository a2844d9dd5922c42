// The audio path of OrvoAudioProcessor: preparation, parameter changes and the block function.

#include "common/Decibels.h"
#include "common/Rounding.h"
#include "core/OrvoAudioProcessor.h"
#include "dsp/FiniteCheck.h"

#include <cmath>

namespace
{
/** How often per second the editor reads the loudness. */
constexpr auto loudnessRequestRate = 30;

constexpr auto soloNone = 3;

bool isOn (const std::atomic<float>* value)
{
    return roundToSwitch (value->load());
}

/** What the host gets in place of samples that are no numbers: silence. */
void silenceNonFiniteSamples (juce::dsp::AudioBlock<float>& block)
{
    for (size_t channel = 0; channel < block.getNumChannels(); ++channel)
    {
        auto* samples = block.getChannelPointer (channel);

        for (size_t i = 0; i < block.getNumSamples(); ++i)
            if (! std::isfinite (samples[i]))
                samples[i] = 0.0f;
    }
}

void runSection (MultiModeClipper& clipper, juce::dsp::AudioBlock<float> block)
{
    if (clipper.enabled)
        clipper.process (juce::dsp::ProcessContextReplacing<float> (block));
}
} // namespace

//======================================================================================================================
// Preparation

int OrvoAudioProcessor::getNumInputChannels() const
{
    return getBusCount (true) > 0 ? getChannelCountOfBus (true, 0) : 0;
}

void OrvoAudioProcessor::prepareToPlay (double newSampleRate, int maximumExpectedSamplesPerBlock)
{
    const juce::ScopedLock scope (processLock);

    const auto numChannels = getNumInputChannels();
    blockSize = juce::jmax (1, maximumExpectedSamplesPerBlock);
    sampleRate = newSampleRate;

    spectrum.prepare (sampleRate);
    levels.prepare (sampleRate);

    for (auto* meter : { &inputLoudnessMeter, &outputLoudnessMeter })
        meter->prepareToPlay (sampleRate, numChannels, blockSize, loudnessRequestRate);

    inputLoudness = inputLoudnessMeter.getData();
    outputLoudness = outputLoudnessMeter.getData();

    waveformTaps.prepare (sampleRate);

    {
        const juce::ScopedLock oversamplerScope (oversamplerLock);
        oversamplers = makeOversamplerBank (numChannels);
        oversamplingSampleRate = sampleRate;

        for (auto* oversampler : oversamplers)
            oversampler->initProcessing (static_cast<size_t> (blockSize));

        partOversamplers.clear();
        for (auto exponent = 0; exponent < oversamplers.size(); ++exponent)
            partOversamplers.emplace_back (static_cast<size_t> (numChannels), static_cast<size_t> (exponent));

        oversampledPart.setSize (numChannels, static_cast<int> (oversampledPartLength));
    }

    reserveForLargestFactor (numChannels);

    needsPrepare = false;
    prepareChain();
}

/** So that a later change of the factor, which `prepareChain` follows in a block, finds its memory. */
void OrvoAudioProcessor::reserveForLargestFactor (int numChannels)
{
    const auto factor = oversamplers.getLast()->getOversamplingFactor();
    const auto largestSize = static_cast<int> (factor) * blockSize;

    splitter.prepare ({ static_cast<double> (factor) * sampleRate, static_cast<juce::uint32> (largestSize),
                        static_cast<juce::uint32> (numChannels) });

    for (auto* buffer : { &midBuffer, &sideBuffer })
        buffer->setSize (1, largestSize, true, true, true);
}

void OrvoAudioProcessor::prepareChain()
{
    auto latency = 0;

    {
        const juce::ScopedLock scope (processLock);
        const auto& oversampler = *oversamplers[oversamplingIndex];
        const auto factor = oversampler.getOversamplingFactor();
        const auto maximumSize = static_cast<int> (factor) * blockSize;

        const juce::dsp::ProcessSpec spec { static_cast<double> (factor) * sampleRate,
                                            static_cast<juce::uint32> (maximumSize),
                                            static_cast<juce::uint32> (getNumInputChannels()) };

        for (auto& section : sections)
            section.clipper->prepare (spec);

        splitter.prepare (spec);

        for (auto* buffer : { &midBuffer, &sideBuffer })
        {
            if (buffer->getNumChannels() != 1 || buffer->getNumSamples() != maximumSize)
            {
                buffer->setSize (1, maximumSize, false, false, true);
                buffer->clear();
            }
        }

        latency = static_cast<int> (oversampler.getLatencyInSamples());
    }

    // Tells the host, if the latency differs.
    setLatencySamples (latency);
}

//======================================================================================================================
// Parameter changes

void OrvoAudioProcessor::parameterChanged (const juce::String& parameterID, float newValue)
{
    const juce::ScopedLock scope (processLock);

    const auto found = addresses.find (parameterID);
    const auto address = found == addresses.end() ? ParameterAddress {} : found->second;

    for (auto i = 0; i < sections.size(); ++i)
    {
        applyLevels (i);

        if (address.section == i)
            applyChange (address, newValue);
    }

    if (address.kind == ParameterAddress::Kind::crossover)
        applyCrossovers();

    updateCeiling();

    if (address.kind == ParameterAddress::Kind::layout)
    {
        layout = roundToChoice (newValue);
        waveformTaps.clear();
    }

    if (address.kind == ParameterAddress::Kind::oversampling)
    {
        const juce::ScopedLock oversamplerScope (oversamplerLock);
        oversamplingIndex = roundToChoice (globalValues.oversampling->load());
        needsPrepare = true;
    }

    resetMeasurements();
}

void OrvoAudioProcessor::applyLevels (int section)
{
    const auto& values = sectionValues[static_cast<size_t> (section)];
    auto& clipper = *sections.getReference (section).clipper;

    const auto threshold = values.threshold->load();
    const auto gain = isOn (values.link) ? -threshold : values.gain->load();

    clipper.setLevels (threshold, gain);
}

void OrvoAudioProcessor::applyChange (ParameterAddress address, float newValue)
{
    auto& clipper = *sections.getReference (address.section).clipper;

    switch (address.kind)
    {
        case ParameterAddress::Kind::shape:
            clipper.setParameter (newValue, 1);
            clipper.raiseChangeCount();
            break;

        case ParameterAddress::Kind::mode: clipper.setMode (roundToChoice (newValue)); break;
        case ParameterAddress::Kind::enable: clipper.enabled = roundToSwitch (newValue); break;

        case ParameterAddress::Kind::other:
        case ParameterAddress::Kind::crossover:
        case ParameterAddress::Kind::layout:
        case ParameterAddress::Kind::oversampling: break;
    }
}

void OrvoAudioProcessor::applyCrossovers()
{
    splitter.setFrequencies (globalValues.crossoverLow->load(), globalValues.crossoverHigh->load());
}

void OrvoAudioProcessor::updateCeiling()
{
    const auto& post = sectionValues.back();
    const auto sumDb = isOn (post.link) ? 0.0f : post.threshold->load() + post.gain->load();

    ceiling.threshold = sumDb > 0.0f || ! isOn (post.enable) ? 1.0f : decibels::toGain (sumDb);
    ceiling.raiseChangeCount();
}

/** Every change restarts the maximum peaks and the loudness. */
void OrvoAudioProcessor::resetMeasurements()
{
    // A click on a readout comes here, too, and a block that runs would write the old maxima back.
    const juce::ScopedLock scope (processLock);

    levels.resetMaxima();
    inputLoudnessMeter.reset();
    outputLoudnessMeter.reset();

    // What publish() says of empty meters, for the moment that the transport stands still.
    inputLoudness = outputLoudness = {};
    shortTermDifference = peakDifference = 0.0f;
    inputMaxPeakDb = outputMaxPeakDb = decibels::floorDb;
}

//======================================================================================================================
// The block

void OrvoAudioProcessor::processAudio (juce::AudioBuffer<float>& buffer)
{
    for (;;)
    {
        if (needsPrepare.exchange (false))
            prepareChain();

        const juce::ScopedLock scope (processLock);

        // Another change may have come before the lock was taken: the buffers would be too small for its
        // factor.
        if (! needsPrepare)
        {
            processLocked (buffer);
            return;
        }
    }
}

void OrvoAudioProcessor::processLocked (juce::AudioBuffer<float>& buffer)
{
    const auto isPrepared = oversamplingSampleRate > 0.0;

    if (! isPrepared || ! isOn (globalValues.enable))
        return;

    const auto numSamples = buffer.getNumSamples();

    if (numSamples <= blockSize)
    {
        processPart (buffer);
        return;
    }

    // A host that breaks its promise about the block size still gets the right audio.
    for (auto start = 0; start < numSamples; start += blockSize)
    {
        juce::AudioBuffer<float> part (buffer.getArrayOfWritePointers(), buffer.getNumChannels(), start,
                                       juce::jmin (blockSize, numSamples - start));
        processPart (part);
    }
}

void OrvoAudioProcessor::processPart (juce::AudioBuffer<float>& buffer)
{
    juce::dsp::AudioBlock<float> block (buffer);

    measureInput (buffer, block);
    applyInputGain (block);
    clip (block);
    measureOutput (buffer, block);
    publish();
}

void OrvoAudioProcessor::measureInput (const juce::AudioBuffer<float>& buffer,
                                       const juce::dsp::AudioBlock<float>& block)
{
    inputLoudnessMeter.processBlock (buffer);
    inputLoudness = inputLoudnessMeter.getData();
    levels.input.process (block);
    waveformTaps.push (0, buffer.getNumChannels(), buffer.getArrayOfReadPointers(), 0,
                       buffer.getNumSamples());

    if (layout == multiBand && block.getNumChannels() > 0)
        feedSpectrum (block);
}

void OrvoAudioProcessor::measureOutput (const juce::AudioBuffer<float>& buffer,
                                        const juce::dsp::AudioBlock<float>& block)
{
    levels.output.process (block);
    waveformTaps.push (1, buffer.getNumChannels(), buffer.getArrayOfReadPointers(), 0,
                       buffer.getNumSamples());
    outputLoudnessMeter.processBlock (buffer);
    outputLoudness = outputLoudnessMeter.getData();
}

void OrvoAudioProcessor::feedSpectrum (const juce::dsp::AudioBlock<float>& block)
{
    const juce::ScopedLock scope (spectrum.lock);
    const auto numChannels = block.getNumChannels();

    for (size_t i = 0; i < block.getNumSamples(); ++i)
    {
        auto sum = 0.0f;

        for (size_t channel = 0; channel < numChannels; ++channel)
            sum += block.getChannelPointer (channel)[i];

        spectrum.pushSample (sum / static_cast<float> (numChannels));
    }
}

/** The parameter moves in tenths, the gain works in whole decibels. */
void OrvoAudioProcessor::applyInputGain (juce::dsp::AudioBlock<float>& block) const
{
    const auto wholeDb = static_cast<float> (juce::roundToInt (globalValues.inGain->load()));
    block.multiplyBy (decibels::toGain (wholeDb));
}

void OrvoAudioProcessor::clip (juce::dsp::AudioBlock<float>& block)
{
    auto isFinite = true;

    {
        const juce::ScopedLock scope (oversamplerLock);
        auto& oversampler = partOversamplers[static_cast<size_t> (oversamplingIndex)];

        // In parts that stay in the processor's first cache from one stage to the next.
        const auto longest = oversampledPartLength >> oversamplingIndex;

        for (size_t start = 0; start < block.getNumSamples(); start += longest)
        {
            auto part = block.getSubBlock (start, juce::jmin (longest, block.getNumSamples() - start));
            isFinite &= clipPart (oversampler, part);
        }

        if (layout == multiBand)
            splitter.finishBlock();

        // Its filters and its delay would hold on to what is not a number.
        if (! isFinite)
            oversampler.reset();
    }

    ceiling.processBlock (Context (block));

    if (! isFinite)
        silenceNonFiniteSamples (block);
}

/** Returns whether all was made of numbers, at either rate. */
bool OrvoAudioProcessor::clipPart (HalfBandOversampler& oversampler, juce::dsp::AudioBlock<float>& part)
{
    if (oversamplingIndex == 0)
    {
        const auto isFinite = isSafelyFinite (part);
        runLayout (part);
        runSection (postClipper, part);
        return isSafelyFinite (part) && isFinite;
    }

    auto oversampled = juce::dsp::AudioBlock<float> (oversampledPart)
                           .getSubsetChannelBlock (0, part.getNumChannels())
                           .getSubBlock (0, part.getNumSamples() << oversamplingIndex);

    oversampler.processUp (part, oversampled);
    auto isFinite = isSafelyFinite (oversampled);

    runLayout (oversampled);
    runSection (postClipper, oversampled);
    isFinite &= isSafelyFinite (oversampled);

    oversampler.processDown (oversampled, part);
    return isSafelyFinite (part) && isFinite;
}

void OrvoAudioProcessor::runLayout (juce::dsp::AudioBlock<float>& block)
{
    switch (layout)
    {
        case multiBand: runMultiBand (block); break;
        case midSide: runMidSide (block); break;
        case leftRight: runLeftRight (block); break;
        default: runSection (singleClipper, block); break;
    }
}

void OrvoAudioProcessor::runMultiBand (juce::dsp::AudioBlock<float>& block)
{
    splitter.splitPart (block);

    runSection (lowBandClipper, splitter.lowBlock);
    runSection (midBandClipper, splitter.midBlock);
    runSection (highBandClipper, splitter.highBlock);

    bandsToMerge.clearQuick();
    const auto solo = roundToChoice (globalValues.soloBand->load());

    if (solo < soloNone)
    {
        // A soloed band is heard even if it is muted.
        bandsToMerge.add (solo);
    }
    else
    {
        for (auto band = 0; band < 3; ++band)
            if (! isOn (sectionValues[static_cast<size_t> (band)].mute))
                bandsToMerge.add (band);
    }

    // With every band muted the list is empty, which merges all of them: three mutes pass the whole signal.
    splitter.mergeBands (block, bandsToMerge);
}

void OrvoAudioProcessor::runMidSide (juce::dsp::AudioBlock<float>& block)
{
    const auto numSamples = block.getNumSamples();
    midBlock = juce::dsp::AudioBlock<float> (midBuffer).getSubBlock (0, numSamples);
    sideBlock = juce::dsp::AudioBlock<float> (sideBuffer).getSubBlock (0, numSamples);

    const auto isStereo = block.getNumChannels() == 2;
    auto* mid = midBlock.getChannelPointer (0);
    auto* side = sideBlock.getChannelPointer (0);

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
    runSection (sideChannelClipper, sideBlock);
    runSection (midChannelClipper, midBlock);

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

void OrvoAudioProcessor::runLeftRight (juce::dsp::AudioBlock<float>& block)
{
    if (block.getNumChannels() == 0)
        return;

    // A mono block goes through both sections in series.
    runSection (leftChannelClipper, block.getSingleChannelBlock (0));
    runSection (rightChannelClipper, block.getSingleChannelBlock (block.getNumChannels() > 1 ? 1 : 0));
}

void OrvoAudioProcessor::publish()
{
    const auto maxPeakDb = [] (luna::temp::StereoLevelProcessor& pair)
    { return decibels::fromGain (static_cast<float> (pair.getMaxPeak())); };

    shortTermDifference = outputLoudness.shortTerm - inputLoudness.shortTerm;
    inputMaxPeakDb = maxPeakDb (levels.input);
    outputMaxPeakDb = maxPeakDb (levels.output);
    peakDifference = outputMaxPeakDb - inputMaxPeakDb;
}
