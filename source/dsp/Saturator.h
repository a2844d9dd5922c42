#pragma once

#include "dsp/AudioEffect.h"

namespace luna
{

/** A memoryless curve with a peak envelope of its input beside it.

    The curve exists twice: `processSample` for viewers, `processBlock` for the audio. Both are the same
    function: a concrete curve inherits `CurveSaturator`, which writes the block form from the sample form, or
    `KernelSaturator`, which writes both from a kernel.

    Levels are linear, 1 is full scale. `process` runs on the audio thread at the oversampled rate; `envelope`
    and `processSample` are read on the message thread without a lock.
*/
class Saturator : public AudioEffect
{
public:
    /** Runs the envelope over the block's first two channels, then the curve over all of them, in place. The
        context's bypass flag is not looked at. */
    void process (const juce::dsp::ProcessContextReplacing<float>& context) final;

    void prepareEffect (const juce::dsp::ProcessSpec& spec) final;

    [[nodiscard]] virtual float processSample (float x) = 0;

    /** Recomputes derived fields from the stored parameters. */
    virtual void updateCoefficients() {}

    virtual void processBlock (const juce::dsp::ProcessContextReplacing<float>& context) = 0;

    /** Linear peak of the curve's input: instant attack, and a release of 40 dB in `releaseMs`. */
    float envelope = 0.0f;

    /** Decay of the envelope per sample. */
    float releaseCoefficient = 0.0f;

    float releaseMs = 2000.0f;

private:
    void runEnvelope (const juce::dsp::AudioBlock<const float>& block) noexcept;
};

/** Writes the block form of `Curve` from its non-virtual `shape (float) const`, so that both forms are one
    function and the loop can inline it. */
template <typename Curve>
class CurveSaturator : public Saturator
{
public:
    float processSample (float x) final { return static_cast<const Curve&> (*this).shape (x); }

    void processBlock (const juce::dsp::ProcessContextReplacing<float>& context) final
    {
        const auto& curve = static_cast<const Curve&> (*this);
        auto block = context.getOutputBlock();

        for (size_t channel = 0; channel < block.getNumChannels(); ++channel)
        {
            auto* samples = block.getChannelPointer (channel);

            for (size_t i = 0; i < block.getNumSamples(); ++i)
                samples[i] = curve.shape (samples[i]);
        }
    }
};

/** Writes both forms of `Curve` from its non-virtual `run (float*, size_t) const`, which works in place. */
template <typename Curve>
class KernelSaturator : public Saturator
{
public:
    float processSample (float x) final
    {
        static_cast<const Curve&> (*this).run (&x, 1);
        return x;
    }

    void processBlock (const juce::dsp::ProcessContextReplacing<float>& context) final
    {
        auto block = context.getOutputBlock();

        for (size_t channel = 0; channel < block.getNumChannels(); ++channel)
            static_cast<const Curve&> (*this).run (block.getChannelPointer (channel), block.getNumSamples());
    }
};

} // namespace luna
