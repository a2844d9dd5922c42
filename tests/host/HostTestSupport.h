#pragma once

#include "scratch/TemporaryFolder.h"

#include <juce_audio_formats/juce_audio_formats.h>

/** A folder that goes with the test. */
struct WorkFolder : TemporaryFolder
{
    [[nodiscard]] juce::File file (const juce::String& name) const { return folder.getChildFile (name); }

    /** Every file's path with its bytes, hidden ones too. */
    [[nodiscard]] juce::StringPairArray contents() const;

    const juce::File folder { path.string() };
};

/** The module that this build made. */
inline const juce::File builtModule (ORVO_MODULE);

struct ProgramRun
{
    int exitCode = -1;
    juce::String output, errors;
};

/** Runs a program in that folder as a shell does, its streams kept apart. A crash has the exit code -1. */
[[nodiscard]] ProgramRun runProgram (const WorkFolder&, const juce::String& command);

/** Runs orvo-host on the built module. */
[[nodiscard]] ProgramRun runHost (const WorkFolder&, const juce::String& words);

/** What the program printed, without the last line's end. */
[[nodiscard]] juce::StringArray linesOf (const juce::String& text);

struct AudioFileContents
{
    juce::AudioBuffer<float> audio;
    double sampleRate = 0.0;
    int bits = 0;
    bool isFloat = false;

    /** Channel after channel: whole numbers in the upper bits of 32, or the bits of floats. */
    std::vector<int> stored;
};

/** Through JUCE's own readers, by content: of WAV, AIFF and RF64. An empty buffer if there is no such audio. */
[[nodiscard]] AudioFileContents readAudio (const juce::File&);

/** Through JUCE's own WAV writer; 32 bits are float. */
void writeWav (const juce::File&, const juce::AudioBuffer<float>&, double sampleRate, int bits);

/** Smooth noise: white noise through a short window, so that nearly all of it lies in the band that
    oversampling keeps, faded in and out over 32 frames. Peaks at `level`. */
[[nodiscard]] juce::AudioBuffer<float> smoothNoise (int channels, int frames, float level);
