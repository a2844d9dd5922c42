// What measures the audio at the host's rate, each for one stereo signal; the chain measures two.

#include "dsp/LevelProcessors.h"
#include "dsp/LUFSMeter.h"
#include "dsp/SpectrumData.h"
#include "dsp/WaveformHistory.h"
#include "Rows.h"

#include <memory>

namespace bench
{

namespace
{
auto makeLoudness()
{
    auto meter = std::make_shared<kf::LUFSMeter>();
    meter->prepareToPlay (hostRate, 2, defaultBlockSize, 30);
    return [meter = std::move (meter)] (juce::AudioBuffer<float>& buffer) { meter->processBlock (buffer); };
}

auto makeLevels()
{
    auto levels = std::make_shared<luna::temp::StereoLevelProcessor>();
    levels->prepare (hostRate);

    return [levels = std::move (levels)] (juce::AudioBuffer<float>& buffer)
    { levels->process (juce::dsp::AudioBlock<float> (buffer)); };
}

auto makeWaveform()
{
    auto history = std::make_shared<WaveformHistory>();
    history->addTap (100.0f, 0, WaveformTap::line);
    history->prepare (hostRate);
    history->setPoints (500);

    return [history = std::move (history)] (juce::AudioBuffer<float>& buffer)
    { history->push (0, 2, buffer.getArrayOfReadPointers(), 0, buffer.getNumSamples()); };
}

auto makeSpectrum()
{
    auto spectrum = std::make_shared<SpectrumData>();
    spectrum->prepare (hostRate);

    return [spectrum = std::move (spectrum)] (juce::AudioBuffer<float>& buffer)
    {
        const auto* samples = buffer.getReadPointer (0);

        for (auto i = 0; i < buffer.getNumSamples(); ++i)
            spectrum->pushSample (samples[i]);
    };
}
} // namespace

void addMeterRows()
{
    addRow ("copy", [] { return [] (juce::AudioBuffer<float>&) {}; });
    addRow ("loudness", makeLoudness);
    addRow ("levels", makeLevels);
    addRow ("waveform", makeWaveform);
    addRow ("spectrum", makeSpectrum);
}

} // namespace bench
