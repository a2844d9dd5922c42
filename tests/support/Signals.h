#pragma once

#include <juce_dsp/juce_dsp.h>

#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <vector>

/** Signals, cuts and measures that several tests share. */
namespace signals
{
using Buffer = juce::AudioBuffer<float>;

/** White noise, evenly spread over plus and minus `amplitude`; the same for the same seed. */
inline Buffer noise (int numChannels, int numSamples, float amplitude = 1.0f, int seed = 1)
{
    Buffer buffer (numChannels, numSamples);
    juce::Random random (seed);

    for (auto channel = 0; channel < numChannels; ++channel)
        for (auto i = 0; i < numSamples; ++i)
            buffer.setSample (channel, i, amplitude * (2.0f * random.nextFloat() - 1.0f));

    return buffer;
}

inline Buffer silence (int numChannels, int numSamples)
{
    Buffer buffer (numChannels, numSamples);
    buffer.clear();
    return buffer;
}

/** The same sine in every channel. */
inline Buffer sine (int numChannels, int numSamples, double frequency, double sampleRate,
                    double amplitude = 1.0)
{
    Buffer buffer (numChannels, numSamples);

    for (auto i = 0; i < numSamples; ++i)
        for (auto channel = 0; channel < numChannels; ++channel)
            buffer.setSample (
                channel, i,
                static_cast<float> (amplitude
                                    * std::sin (2.0 * std::numbers::pi * frequency * i / sampleRate)));

    return buffer;
}

inline Buffer impulse (int numChannels, int numSamples)
{
    auto buffer = silence (numChannels, numSamples);
    for (auto channel = 0; channel < numChannels; ++channel)
        buffer.setSample (channel, 0, 1.0f);
    return buffer;
}

/** Hands the buffer to `process` in blocks of the given lengths, over and over, without copies. */
template <typename Process>
void inBlocks (Buffer& buffer, const std::vector<int>& lengths, Process&& process)
{
    auto start = 0;

    for (size_t n = 0; start < buffer.getNumSamples(); ++n)
    {
        const auto length = juce::jmin (lengths[n % lengths.size()], buffer.getNumSamples() - start);
        Buffer block (buffer.getArrayOfWritePointers(), buffer.getNumChannels(), start, length);
        process (block);
        start += length;
    }
}

template <typename Processor>
void processInPlace (Processor& processor, Buffer& buffer)
{
    juce::dsp::AudioBlock<float> block (buffer);
    processor.process (juce::dsp::ProcessContextReplacing<float> (block));
}

/** Of two buffers of one size, or of a part of them. Infinite if either holds something there that is no number. */
inline double largestDifference (const Buffer& a, const Buffer& b, int from, int to)
{
    auto largest = 0.0;

    for (auto channel = 0; channel < a.getNumChannels(); ++channel)
    {
        for (auto i = from; i < to; ++i)
        {
            const auto difference = static_cast<double> (a.getSample (channel, i))
                                    - static_cast<double> (b.getSample (channel, i));

            if (! std::isfinite (difference))
                return std::numeric_limits<double>::infinity();

            largest = std::max (largest, std::abs (difference));
        }
    }

    return largest;
}

inline double largestDifference (const Buffer& a, const Buffer& b)
{
    return largestDifference (a, b, 0, a.getNumSamples());
}

inline bool isFinite (const Buffer& buffer)
{
    return std::isfinite (largestDifference (buffer, buffer));
}

/** The Fourier transform of a finite signal at one frequency, in cycles per sample. */
template <typename Sample>
std::complex<double> transformAt (const Sample* samples, int numSamples, double frequency)
{
    const auto step = std::polar (1.0, -2.0 * std::numbers::pi * frequency);
    std::complex<double> sum, turn { 1.0, 0.0 };

    for (auto i = 0; i < numSamples; ++i, turn *= step)
        sum += static_cast<double> (samples[i]) * turn;

    return sum;
}

inline double toGain (double db)
{
    return std::pow (10.0, 0.05 * db);
}

inline double toDb (double gain)
{
    return 20.0 * std::log10 (gain);
}
} // namespace signals
