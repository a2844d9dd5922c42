#pragma once

#include "dsp/JuceOversamplers.h"
#include "dsp/LevelProcessors.h"
#include "dsp/SpectrumData.h"
#include "reference/CurveTable.h"
#include "reference/Loudness.h"
#include "reference/Splitter.h"

#include <memory>

namespace reference
{
/** What the plug-in does to a stereo block, each step for itself over the whole block: every section of a layout
    with the same mode, threshold and shape, "post" at its default, no gain. */
class BlockChain
{
public:
    struct Settings
    {
        int mode = 1;
        float thresholdDb = -6.0f;
        float shape = 0.5f;
        bool isMultiBand = false;
        int exponent = 0;
    };

    BlockChain (const Settings& s, double sampleRate, int blockSize)
        : BlockChain (s, sampleRate, blockSize, preparedMeter (sampleRate, blockSize))
    {
    }

    void process (juce::AudioBuffer<float>& buffer)
    {
        juce::dsp::AudioBlock<float> block (buffer);
        loudnessIn.processBlock (buffer);
        track (levelsIn, buffer);

        if (settings.isMultiBand)
            for (auto i = 0; i < buffer.getNumSamples(); ++i)
                spectrum->pushSample ((buffer.getSample (0, i) + buffer.getSample (1, i)) / 2.0f);

        block.multiplyBy (1.0f);
        auto up = oversamplers[settings.exponent]->processSamplesUp (block);
        runSections (up);
        post.process (up);
        oversamplers[settings.exponent]->processSamplesDown (block);
        ceiling.process (block);

        track (levelsOut, buffer);
        loudnessOut.processBlock (buffer);
    }

private:
    /** Envelope, curve and makeup. */
    struct Section
    {
        void process (juce::dsp::AudioBlock<float> block)
        {
            for (size_t i = 0; i < block.getNumSamples(); ++i)
                envelope (block.getChannelPointer (0)[i], block.getChannelPointer (1)[i]);

            for (size_t channel = 0; channel < block.getNumChannels(); ++channel)
                curve ({ block.getChannelPointer (channel), block.getNumSamples() });

            block.multiplyBy (1.0f);
        }

        Form<float> curve;
        Envelope envelope;
    };

    BlockChain (const Settings& s, double sampleRate, int blockSize, std::unique_ptr<kf::LUFSMeter> meter)
        : settings (s),
          loudnessIn (*meter),
          loudnessOut (*meter),
          oversamplers (makeJuceOversamplers (2)),
          post { curveOfMode (1).plain (0.0f, 0.0f), Envelope (sampleRate * (1 << s.exponent)) },
          ceiling { curveOfMode (0).plain (0.0f, 0.0f), Envelope (sampleRate) }
    {
        const auto rate = sampleRate * (1 << settings.exponent);
        const auto& curve = curveOfMode (settings.mode);

        for (auto n = 0; n < 3; ++n)
            sections.push_back (
                { curve.plain (settings.thresholdDb, curve.most * settings.shape), Envelope (rate) });

        levelsIn.prepare (sampleRate);
        levelsOut.prepare (sampleRate);
        spectrum->prepare (sampleRate);
        oversamplers[settings.exponent]->initProcessing (static_cast<size_t> (blockSize));
        splitter.prepare ({ rate, static_cast<juce::uint32> (blockSize << settings.exponent), 2 });
        splitter.setFrequencies (160.0f, 3500.0f);
    }

    static std::unique_ptr<kf::LUFSMeter> preparedMeter (double sampleRate, int blockSize)
    {
        auto meter = std::make_unique<kf::LUFSMeter>();
        meter->prepareToPlay (sampleRate, 2, blockSize, 30);
        return meter;
    }

    static void track (luna::temp::StereoLevelProcessor& levels, const juce::AudioBuffer<float>& buffer)
    {
        for (auto channel : { 0, 1 })
            for (auto i = 0; i < buffer.getNumSamples(); ++i)
                (channel == 0 ? levels.left : levels.right)
                    .processSample (std::abs (buffer.getSample (channel, i)));
    }

    void runSections (juce::dsp::AudioBlock<float>& block)
    {
        if (! settings.isMultiBand)
        {
            sections.front().process (block);
            return;
        }

        splitter.split (block);
        sections[0].process (splitter.lowBlock);
        sections[1].process (splitter.midBlock);
        sections[2].process (splitter.highBlock);
        splitter.mergeAll (block);
    }

    Settings settings;
    Loudness loudnessIn, loudnessOut;
    luna::temp::StereoLevelProcessor levelsIn, levelsOut;
    std::unique_ptr<SpectrumData> spectrum = std::make_unique<SpectrumData>();
    JuceOversamplers oversamplers;
    Splitter splitter;
    std::vector<Section> sections;
    Section post, ceiling;
};
} // namespace reference
