#pragma once

#include "reference/CurveTable.h"
#include "reference/Splitter.h"

#include <array>
#include <map>
#include <string>
#include <vector>

/** The whole chain in double precision, written from its formulas alone. It shares no code with the product;
    the oversampler and the crossover are JUCE's, in single precision. */
namespace reference
{
/** Of the parameters, by their IDs. */
using Values = std::map<std::string, double>;
using Samples = std::vector<double>;
using Signal = std::vector<Samples>;

inline Signal toSignal (const juce::dsp::AudioBlock<const float>& block)
{
    Signal signal;

    for (size_t channel = 0; channel < block.getNumChannels(); ++channel)
        signal.emplace_back (block.getChannelPointer (channel),
                             block.getChannelPointer (channel) + block.getNumSamples());

    return signal;
}

template <typename Target>
void copyTo (Target& target, const Signal& signal)
{
    for (size_t channel = 0; channel < signal.size(); ++channel)
        for (size_t i = 0; i < signal[channel].size(); ++i)
            target.setSample (static_cast<int> (channel), static_cast<int> (i),
                              static_cast<float> (signal[channel][i]));
}

/** Halves to the even number. */
inline int toChoice (double value)
{
    return static_cast<int> (std::nearbyint (value));
}

inline void runSection (const Values& values, const std::string& id, Samples& samples)
{
    const auto isOn = [&] (const std::string& prefix) { return toChoice (values.at (prefix + id)) != 0; };
    const auto threshold = values.at ("threshold_" + id);
    const auto makeup = toGain (isOn ("link_") ? -threshold : values.at ("gain_" + id));

    if (! isOn ("enable_"))
        return;

    const auto& curve = curveOfMode (toChoice (values.at ("mode_" + id)));
    curve.exact (threshold, static_cast<double> (curve.most) * values.at ("shape_" + id)) (samples);

    for (auto& x : samples)
        x *= makeup;
}

inline void runMultiBand (const Values& values, Signal& signal, double sampleRate)
{
    const auto length = static_cast<int> (signal.front().size());
    juce::AudioBuffer<float> buffer (static_cast<int> (signal.size()), length);
    copyTo (buffer, signal);

    Splitter splitter;
    splitter.prepare (
        { sampleRate, static_cast<juce::uint32> (length), static_cast<juce::uint32> (signal.size()) });
    splitter.setFrequencies (static_cast<float> (values.at ("crossover_low")),
                             static_cast<float> (values.at ("crossover_high")));
    splitter.split (juce::dsp::AudioBlock<const float> (buffer));
    std::array bands { toSignal (splitter.low), toSignal (splitter.mid), toSignal (splitter.high) };

    std::array<bool, 3> isHeard {};
    const std::array ids { "low_band", "mid_band", "high_band" };
    const auto solo = toChoice (values.at ("solo_band"));

    for (size_t band = 0; band < 3; ++band)
    {
        for (auto& channel : bands[band])
            runSection (values, ids[band], channel);

        isHeard[band] = solo == 3 ? toChoice (values.at (std::string ("mute_") + ids[band])) == 0
                                  : static_cast<int> (band) == solo;
    }

    if (isHeard == std::array { false, false, false })
        isHeard = { true, true, true };

    for (size_t channel = 0; channel < signal.size(); ++channel)
    {
        for (size_t i = 0; i < signal[channel].size(); ++i)
        {
            signal[channel][i] = 0.0;

            for (size_t band = 0; band < 3; ++band)
                signal[channel][i] += isHeard[band] ? bands[band][channel][i] : 0.0;
        }
    }
}

inline void runMidSide (const Values& values, Signal& signal)
{
    if (signal.size() != 2)
        return;

    auto &left = signal[0], &right = signal[1];
    auto mid = left, side = left;

    for (size_t i = 0; i < left.size(); ++i)
    {
        mid[i] = 0.5 * (left[i] + right[i]);
        side[i] = 0.5 * (left[i] - right[i]);
    }

    runSection (values, "mid_channel", mid);
    runSection (values, "high_channel", side);

    for (size_t i = 0; i < left.size(); ++i)
    {
        left[i] = mid[i] + side[i];
        right[i] = mid[i] - side[i];
    }
}

/** The sections of the layout, then "post". */
inline void runSections (const Values& values, Signal& signal, double sampleRate)
{
    switch (toChoice (values.at ("layout")))
    {
        case 0:
            for (auto& channel : signal)
                runSection (values, "single", channel);
            break;

        case 1: runMultiBand (values, signal, sampleRate); break;
        case 2: runMidSide (values, signal); break;

        default:
            runSection (values, "left_channel", signal.front());
            runSection (values, "right_channel", signal.back());
            break;
    }

    for (auto& channel : signal)
        runSection (values, "post", channel);
}

/** The oversampler, built from its stages: transition widths and stopbands, up and down. */
inline void addStages (juce::dsp::Oversampling<float>& oversampler, int exponent)
{
    constexpr auto type = juce::dsp::Oversampling<float>::filterHalfBandFIREquiripple;
    oversampler.clearOversamplingStages();
    oversampler.setUsingIntegerLatency (true);

    for (auto stage = 0; stage < exponent; ++stage)
    {
        const auto step = 10.0f * static_cast<float> (stage);
        oversampler.addOversamplingStage (type, stage == 0 ? 0.05f : 0.10f, -90.0f + step,
                                          stage == 0 ? 0.06f : 0.12f, -75.0f + step);
    }
}

inline void runOversampled (const Values& values, Signal& signal, double sampleRate, int exponent)
{
    const auto length = static_cast<int> (signal.front().size());
    juce::AudioBuffer<float> buffer (static_cast<int> (signal.size()), length);
    copyTo (buffer, signal);

    juce::dsp::Oversampling<float> oversampler (signal.size());
    addStages (oversampler, exponent);
    oversampler.initProcessing (static_cast<size_t> (length));

    juce::dsp::AudioBlock<float> block (buffer);
    auto up = oversampler.processSamplesUp (block);
    auto inside = toSignal (up);

    runSections (values, inside, sampleRate * (1 << exponent));
    copyTo (up, inside);
    oversampler.processSamplesDown (block);
    signal = toSignal (buffer);
}

inline double ceiling (const Values& values)
{
    const auto isOn = [&] (const char* id) { return toChoice (values.at (id)) != 0; };
    const auto sum = values.at ("threshold_post") + values.at ("gain_post");
    return ! isOn ("enable_post") || isOn ("link_post") ? 1.0 : toGain (std::min (sum, 0.0));
}

/** From a cleared state. */
inline juce::AudioBuffer<float> process (const Values& values, double sampleRate,
                                         const juce::AudioBuffer<float>& input)
{
    auto signal = toSignal (input);
    const auto exponent = toChoice (values.at ("oversampling"));

    for (auto& channel : signal)
        for (auto& x : channel)
            x *= toGain (std::nearbyint (values.at ("in_gain")));

    if (exponent > 0)
        runOversampled (values, signal, sampleRate, exponent);
    else
        runSections (values, signal, sampleRate);

    for (auto& channel : signal)
        for (auto& x : channel)
            x = std::clamp (x, -ceiling (values), ceiling (values));

    juce::AudioBuffer<float> output (input.getNumChannels(), input.getNumSamples());
    copyTo (output, signal);
    return output;
}
} // namespace reference
