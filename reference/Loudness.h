#pragma once

#include "dsp/LUFSMeter.h"

#include <cmath>
#include <numeric>
#include <vector>

namespace reference
{
/** What a loudness meter does to every sample and bin, channel by channel and filter by filter; gates,
    histograms and what is no number are left out. */
class Loudness
{
public:
    /** Starts with the filters and sizes of a prepared meter. */
    explicit Loudness (const kf::LUFSMeter& meter)
        : pre (meter.preFilter),
          low (meter.revisedLowFrequencyBCurveFilter),
          bins (meter.bins),
          samplesPerBin (meter.numberOfSamplesPerBin),
          binsIn400ms (meter.numberOfBinsIn400ms),
          squares (meter.bufferForMeasurement)
    {
    }

    void processBlock (const juce::AudioBuffer<float>& buffer)
    {
        squares.setSize (buffer.getNumChannels(), buffer.getNumSamples(), false, false, true);
        for (auto channel = 0; channel < squares.getNumChannels(); ++channel)
            squares.copyFrom (channel, 0, buffer, channel, 0, squares.getNumSamples());

        isSilent = buffer.getMagnitude (0, buffer.getNumSamples()) < 1.0e-12f;
        pre.processBlock (squares);
        low.processBlock (squares);

        for (auto channel = 0; channel < squares.getNumChannels(); ++channel)
            for (auto* x = squares.getWritePointer (channel);
                 x != squares.getReadPointer (channel) + squares.getNumSamples(); ++x)
                *x *= *x;

        for (auto start = 0; start < buffer.getNumSamples();)
        {
            const auto length = juce::jmin (samplesPerBin - inBin, buffer.getNumSamples() - start);

            for (size_t channel = 0; channel < bins.size(); ++channel)
            {
                const auto* first = squares.getReadPointer (static_cast<int> (channel), start);
                auto& bin = bins[channel][current];
                bin = std::accumulate (first, first + length, bin);
            }

            start += length;
            inBin += length;

            if (inBin == samplesPerBin)
                finishBin();
        }
    }

    kf::SecondOrderIIRFilter pre, low;
    std::vector<std::vector<double>> bins;
    double shortTerm = 0.0, momentary = 0.0;
    bool isSilent = false;

private:
    void finishBin()
    {
        for (const auto& ring : bins)
        {
            shortTerm = std::log10 (std::accumulate (ring.begin(), ring.end(), 0.0));
            auto sum = 0.0;
            for (auto back = 0; back < binsIn400ms; ++back)
                sum += ring[(current + ring.size() - static_cast<size_t> (back)) % ring.size()];
            momentary = std::log10 (sum);
        }

        current = (current + 1) % bins.front().size();
        inBin = 0;

        for (auto& ring : bins)
            ring[current] = 0.0;
    }

    int samplesPerBin, binsIn400ms, inBin = 0;
    size_t current = 0;
    juce::AudioBuffer<float> squares;
};
} // namespace reference
