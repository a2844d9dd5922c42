#pragma once

#include "dsp/ChainMeasurements.h"
#include "dsp/ReferenceChain.h"
#include "dsp/SignalChain.h"

/** What sounds and what measures, without the plug-in: the parts by value, and what drives them. */
struct ChainUnderTest
{
    explicit ChainUnderTest (int numChannels = 2, double sampleRate = 48000.0, int maximumBlockSize = 512)
    {
        waveformTaps.addTap (0.0f, 0, WaveformTap::filledBars);
        waveformTaps.addTap (100.0f, 0, WaveformTap::line);
        measurements.prepare (sampleRate, maximumBlockSize, numChannels);
        chain.prepare (sampleRate, maximumBlockSize, numChannels);
        chain.setFactor (0);
        set (values);
    }

    /** By the parameters' IDs. The rest stays as it is. */
    void set (const expected::Values& changes)
    {
        const auto exponent = values.at ("oversampling");

        for (const auto& [id, value] : changes)
            values.at (id) = static_cast<double> (static_cast<float> (value));

        for (size_t row = 0; row < clippers.size(); ++row)
            setSection (clippers[row], expected::sections[row].id);

        for (size_t band = 0; band < settings.isBandMuted.size(); ++band)
            settings.isBandMuted[band] = isOn ("mute_" + expected::sections[band].id);

        settings.layout = reference::toChoice (values.at ("layout"));
        settings.soloBand = reference::toChoice (values.at ("solo_band"));
        settings.inputGainDb = static_cast<float> (std::nearbyint (values.at ("in_gain")));
        ceiling.threshold = static_cast<float> (reference::ceiling (values));
        splitter.setFrequencies (get ("crossover_low"), get ("crossover_high"));

        if (values.at ("oversampling") != exponent)
            chain.setFactor (reference::toChoice (values.at ("oversampling")));
    }

    [[nodiscard]] float get (const std::string& id) const { return static_cast<float> (values.at (id)); }

    void process (juce::AudioBuffer<float>& block)
    {
        const juce::ScopedNoDenormals noDenormals;
        measurements.measureInput (block, settings.layout == 1);
        chain.process (juce::dsp::AudioBlock<float> (block), settings);
        measurements.measureOutput (block);
    }

    /** In blocks of the given lengths, over and over. */
    juce::AudioBuffer<float> render (juce::AudioBuffer<float> signal,
                                     const std::vector<int>& lengths = { 512 })
    {
        signals::inBlocks (signal, lengths, [this] (auto& block) { process (block); });
        return signal;
    }

    /** What the meters and graphs show of the last seconds, but for loudness, and what remembers one huge sample. */
    std::vector<double> readings (bool withPeaks = true)
    {
        std::vector<double> all;

        for (auto* pair : { &levels.input, &levels.output })
        {
            for (auto* channel : { &pair->left, &pair->right })
            {
                const auto data = channel->getData();
                all.push_back (data.rms);

                if (withPeaks)
                    all.insert (all.end(), { data.peak, data.heldPeak, data.maxPeak, data.maxRms });
            }
        }

        for (const auto& tap : waveformTaps.taps)
            for (const auto value : tap.values)
                all.push_back (std::max (-100.0, static_cast<double> (value)));

        if (withPeaks)
        {
            all.insert (all.end(), spectrum.magnitudes.begin(), spectrum.magnitudes.end());

            for (const auto& clipper : clippers)
                all.push_back (static_cast<double> (clipper.current->envelope));
        }

        return all;
    }

    expected::Values values = expected::defaults();
    SignalChain::Settings settings;

    std::array<MultiModeClipper, 9> clippers;
    ThreeBandSplitter splitter;
    juce::AudioBuffer<float> midBuffer, sideBuffer;
    juce::dsp::AudioBlock<float> midBlock, sideBlock;
    luna::HardClipper ceiling;

    WaveformHistory waveformTaps;
    SpectrumData spectrum;
    luna::temp::InputOutputLevelProcessor levels;
    kf::LUFSMeter inputMeter, outputMeter;
    kf::LUFSData inputLoudness, outputLoudness;
    float shortTermDifference = 0.0f, peakDifference = 0.0f, inputMaxPeakDb = 0.0f, outputMaxPeakDb = 0.0f;

    SignalChain chain { { { &clippers[0], &clippers[1], &clippers[2], &clippers[3], &clippers[4],
                            &clippers[5], &clippers[6], &clippers[7], &clippers[8] },
                          splitter,
                          midBuffer,
                          sideBuffer,
                          midBlock,
                          sideBlock,
                          ceiling } };
    ChainMeasurements measurements { { waveformTaps, spectrum, levels, inputMeter, outputMeter, inputLoudness,
                                       outputLoudness, shortTermDifference, peakDifference, inputMaxPeakDb,
                                       outputMaxPeakDb } };

private:
    [[nodiscard]] bool isOn (const std::string& id) const
    {
        return reference::toChoice (values.at (id)) != 0;
    }

    /** The mode takes over what is set. */
    void setSection (MultiModeClipper& clipper, const std::string& id) const
    {
        const auto threshold = get ("threshold_" + id);
        clipper.enabled = isOn ("enable_" + id);
        clipper.setLevels (threshold, isOn ("link_" + id) ? -threshold : get ("gain_" + id));
        clipper.setParameter (get ("shape_" + id), 1);
        clipper.setMode (reference::toChoice (values.at ("mode_" + id)));
    }
};
