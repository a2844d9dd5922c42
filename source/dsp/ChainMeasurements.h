#pragma once

#include "dsp/LevelProcessors.h"
#include "dsp/LUFSMeter.h"
#include "dsp/SpectrumData.h"
#include "dsp/WaveformHistory.h"

/** What the window shows of a block: loudness, levels, waveform and spectrum, of what the host delivers and of what it
    gets back.

    It feeds meters that its owner holds. The owner's lock keeps the calls apart from one another; the published floats
    and loudness records are read without it. Only `prepare` allocates.
*/
class ChainMeasurements
{
public:
    struct Parts
    {
        /** Tap 0 is the input, tap 1 the output. */
        WaveformHistory& waveformTaps;
        SpectrumData& spectrum;
        luna::temp::InputOutputLevelProcessor& levels;
        kf::LUFSMeter &inputLoudnessMeter, &outputLoudnessMeter;

        /** Published. */
        kf::LUFSData &inputLoudness, &outputLoudness;

        /** Published: output minus input, in LU and dB. */
        float &shortTermDifference, &peakDifference;

        /** Published: since the last reset, in dB of full scale. */
        float &inputMaxPeakDb, &outputMaxPeakDb;
    };

    explicit ChainMeasurements (const Parts& partsToUse) : parts (partsToUse) {}

    /** Starts all anew and publishes that. `sampleRate` in Hz. */
    void prepare (double sampleRate, int maximumBlockSize, int numChannels);

    /** Before any gain. The spectrum is that of the channels' mean. */
    void measureInput (const juce::AudioBuffer<float>& buffer, bool withSpectrum);

    /** Behind the ceiling; publishes differences and peaks of this block. */
    void measureOutput (const juce::AudioBuffer<float>& buffer);

    /** Starts maximum peaks and loudness anew, and publishes that at once, since no block may come. */
    void reset();

private:
    void feedSpectrum (const juce::AudioBuffer<float>& buffer);
    void publish();

    const Parts parts;
};
