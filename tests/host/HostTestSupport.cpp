#include "HostTestSupport.h"

#include <juce_events/juce_events.h>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdlib>

juce::StringPairArray WorkFolder::contents() const
{
    juce::StringPairArray result;

    for (const auto& entry : folder.findChildFiles (juce::File::findFilesAndDirectories, true))
    {
        juce::MemoryBlock bytes;
        entry.loadFileAsData (bytes);
        result.set (entry.getFullPathName(), bytes.toBase64Encoding());
    }

    return result;
}

ProgramRun runProgram (const WorkFolder& temporary, const juce::String& command)
{
    const WorkFolder streams;
    const auto output = streams.file ("out"), errors = streams.file ("err");
    const auto line = "cd '" + temporary.folder.getFullPathName() + "' && " + command + " > '"
                      + output.getFullPathName() + "' 2> '" + errors.getFullPathName() + "'";
    const auto status = std::system (line.toRawUTF8());

    return { WIFEXITED (status) && WEXITSTATUS (status) < 126 ? WEXITSTATUS (status) : -1,
             output.loadFileAsString(), errors.loadFileAsString() };
}

ProgramRun runHost (const WorkFolder& temporary, const juce::String& words)
{
    return runProgram (temporary, ORVO_HOST " " + words);
}

juce::StringArray linesOf (const juce::String& text)
{
    return juce::StringArray::fromLines (text.trimCharactersAtEnd ("\n"));
}

AudioFileContents readAudio (const juce::File& file)
{
    juce::AudioFormatManager formats;
    formats.registerBasicFormats();
    AudioFileContents contents;

    if (const std::unique_ptr<juce::AudioFormatReader> reader (
            formats.createReaderFor (file.createInputStream()));
        reader != nullptr)
    {
        contents.sampleRate = reader->sampleRate;
        contents.bits = static_cast<int> (reader->bitsPerSample);
        contents.isFloat = reader->usesFloatingPointData;
        contents.audio.setSize (static_cast<int> (reader->numChannels),
                                static_cast<int> (reader->lengthInSamples));
        const auto frames = contents.audio.getNumSamples();
        reader->read (&contents.audio, 0, frames, 0, true, true);

        const auto numChannels = contents.audio.getNumChannels();
        contents.stored.resize (static_cast<size_t> (frames * numChannels));
        int* const channels[] { contents.stored.data(), contents.stored.data() + (numChannels - 1) * frames };
        reader->read (channels, numChannels, 0, frames, false);
    }

    return contents;
}

void writeWav (const juce::File& file, const juce::AudioBuffer<float>& audio, double sampleRate, int bits)
{
    file.deleteFile();
    auto stream = std::make_unique<juce::FileOutputStream> (file);
    const std::unique_ptr<juce::AudioFormatWriter> writer (juce::WavAudioFormat().createWriterFor (
        stream.release(), sampleRate, static_cast<unsigned int> (audio.getNumChannels()), bits, {}, 0));

    writer->writeFromAudioSampleBuffer (audio, 0, audio.getNumSamples());
}

juce::AudioBuffer<float> smoothNoise (int channels, int frames, float level)
{
    juce::Random random (7);
    constexpr auto window = 12;
    juce::AudioBuffer<float> audio (channels, frames);

    for (auto channel = 0; channel < channels; ++channel)
    {
        std::vector<float> white (static_cast<size_t> (frames + window));
        for (auto& sample : white)
            sample = random.nextFloat() - 0.5f;

        for (auto i = 0; i < frames; ++i)
        {
            auto sum = 0.0f;
            for (auto k = 0; k < window; ++k)
                sum += white[static_cast<size_t> (i + k)]
                       * (1.0f
                          - std::cos (juce::MathConstants<float>::twoPi * (static_cast<float> (k) + 0.5f)
                                      / window));
            audio.setSample (channel, i, sum);
        }
    }

    const auto fade = juce::jmin (32, frames);
    audio.applyGain (level / audio.getMagnitude (0, frames));
    audio.applyGainRamp (0, fade, 0.0f, 1.0f);
    audio.applyGainRamp (frames - fade, fade, 1.0f, 0.0f);
    return audio;
}

int main (int argc, char** argv)
{
    testing::InitGoogleTest (&argc, argv);
    forbidDisplay();
    const TemporaryHome home;
    const juce::ScopedJuceInitialiser_GUI juce;
    return RUN_ALL_TESTS();
}
