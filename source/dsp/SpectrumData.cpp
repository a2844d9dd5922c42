#include "SpectrumData.h"

#include <cmath>
#include <numeric>

namespace
{
constexpr auto fftOrder = 11;
constexpr auto decaySeconds = 0.2f;
} // namespace

SpectrumData::SpectrumData()
    : fft (std::make_unique<juce::dsp::FFT> (fftOrder)), fftSize (fft->getSize()), transform (fftSize)
{
    window.resize (fftSize);
    juce::dsp::WindowingFunction<float>::fillWindowingTables (
        window.getRawDataPointer(), static_cast<size_t> (fftSize), juce::dsp::WindowingFunction<float>::hann,
        true);
}

void SpectrumData::prepare (double newSampleRate)
{
    const juce::ScopedLock scope (lock);

    sampleRate = newSampleRate;
    decay =
        std::exp (-1.0f / (static_cast<float> (sampleRate) * decaySeconds / static_cast<float> (fftSize)));

    samples.resize (fftSize);
    fftData.resize (2 * fftSize);
    magnitudes.clearQuick();
    magnitudes.insertMultiple (0, 0.0f, fftSize);
    writeIndex = 0;
    windowSum = std::accumulate (window.begin(), window.end(), 0.0f);
}

void SpectrumData::pushSample (float x) noexcept
{
    samples.setUnchecked (writeIndex, x);

    if (++writeIndex < fftSize)
        return;

    runFrame();
    writeIndex = 0;
}

void SpectrumData::runFrame() noexcept
{
    auto* data = fftData.getRawDataPointer();
    juce::FloatVectorOperations::multiply (transform.getFrame(), samples.getRawDataPointer(),
                                           window.getRawDataPointer(), fftSize);
    transform.run (data);

    for (auto i = 0; i < fftSize; ++i)
    {
        const auto magnitude = data[i] / (windowSum * 0.5f);
        auto& held = magnitudes.getReference (i);

        // Neither an infinite magnitude nor NaN may enter: nothing would ever decay from it.
        if (magnitude > held && std::isfinite (magnitude))
            held = magnitude;
        else
            held *= decay;
    }
}
