#include "HostTestSupport.h"

#include "PluginHost.h"

#include <juce_events/juce_events.h>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdlib>

TemporaryFolder::TemporaryFolder() : folder (juce::File::createTempFile ("orvo-host-test"))
{
    folder.createDirectory();
}

TemporaryFolder::~TemporaryFolder()
{
    folder.deleteRecursively();
}

juce::StringPairArray TemporaryFolder::contents() const
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

juce::File builtModule()
{
    return juce::File (ORVO_MODULE);
}

ProgramRun runHost (const TemporaryFolder& temporary, juce::StringArray words)
{
    const TemporaryFolder streams;
    const auto output = streams.file ("out"), errors = streams.file ("err");

    words.insert (0, ORVO_HOST);
    for (auto& word : words)
        word = "'" + word + "'";

    const auto command = "cd '" + temporary.folder.getFullPathName() + "' && " + words.joinIntoString (" ")
                         + " > '" + output.getFullPathName() + "' 2> '" + errors.getFullPathName() + "'";
    const auto status = std::system (command.toRawUTF8());

    return { WIFEXITED (status) && WEXITSTATUS (status) < 126 ? WEXITSTATUS (status) : -1,
             output.loadFileAsString(), errors.loadFileAsString() };
}

AudioFileContents readAudio (const juce::File& file)
{
    juce::AudioFormatManager formats;
    formats.registerBasicFormats();
    AudioFileContents contents;

    if (const std::unique_ptr<juce::AudioFormatReader> reader (formats.createReaderFor (file));
        reader != nullptr)
    {
        contents = {
            {}, reader->sampleRate, static_cast<int> (reader->bitsPerSample), reader->usesFloatingPointData
        };
        contents.audio.setSize (static_cast<int> (reader->numChannels),
                                static_cast<int> (reader->lengthInSamples));
        reader->read (&contents.audio, 0, contents.audio.getNumSamples(), 0, true, true);
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

    const TemporaryFolder home;
    setenv ("HOME", home.folder.getFullPathName().toRawUTF8(), 1);
    setenv ("XDG_CONFIG_HOME", home.folder.getFullPathName().toRawUTF8(), 1);

    const juce::ScopedJuceInitialiser_GUI juce;
    return RUN_ALL_TESTS();
}
