#include "AudioFile.h"
#include "common/ConfigFolder.h"
#include "Failure.h"
#include "HostTestSupport.h"
#include "PluginHost.h"

#include <juce_graphics/juce_graphics.h>

#include <gtest/gtest.h>

#include <cmath>

namespace
{
/** Settings with which the sections and the ceiling leave a signal below full scale alone. */
const juce::StringArray transparent { "--set", "enable_single=Off", "--set", "enable_post=Off" };

class Rendering : public testing::TestWithParam<const char*>
{
};

TEST_P (Rendering, LinesUpWithTheInputAndKeepsItsLength)
{
    const TemporaryFolder temporary;
    const auto input = smoothNoise (2, 20001, 0.5f);
    writeWav (temporary.file ("in.wav"), input, 44100.0, 32);

    juce::StringArray words { "render", "in.wav", "out.wav", "--block", "300" };
    words.addArray (transparent);
    words.addArray ({ "--set", "oversampling=" + juce::String (GetParam()) });

    const auto run = runHost (temporary, words);
    ASSERT_EQ (run.exitCode, 0) << run.errors;

    const auto output = readAudio (temporary.file ("out.wav"));
    ASSERT_EQ (output.audio.getNumSamples(), input.getNumSamples());
    ASSERT_EQ (output.audio.getNumChannels(), 2);
    EXPECT_EQ (output.sampleRate, 44100.0);

    for (auto channel = 0; channel < 2; ++channel)
    {
        // Smooth noise differs by more than this from itself a frame later. The last frames too: they come
        // out only because silence is fed behind them.
        for (auto i = 0; i < input.getNumSamples(); i += 10)
            ASSERT_NEAR (output.audio.getSample (channel, i), input.getSample (channel, i), 0.02f) << i;
    }
}

INSTANTIATE_TEST_SUITE_P (EveryFactor, Rendering, testing::Values ("Off", "2x", "4x", "8x", "16x"));

TEST (Program, ClipsAFileAtTheThreshold)
{
    const TemporaryFolder temporary;
    writeWav (temporary.file ("in.wav"), smoothNoise (1, 8000, 0.5f), 48000.0, 32);

    const auto run =
        runHost (temporary, { "render", "in.wav", "out.wav", "--set", "mode_single=hard", "--set",
                              "threshold_single=-6", "--set", "in_gain=12dB", "--set", "enable_post=off" });
    ASSERT_EQ (run.exitCode, 0) << run.errors;

    const auto threshold = static_cast<float> (std::pow (10.0, -6.0 / 20.0));
    const auto gain = static_cast<float> (std::pow (10.0, 12.0 / 20.0));
    const auto input = readAudio (temporary.file ("in.wav")).audio;
    const auto output = readAudio (temporary.file ("out.wav")).audio;
    auto clipped = 0;

    ASSERT_EQ (output.getNumSamples(), input.getNumSamples());
    for (auto i = 0; i < input.getNumSamples(); ++i)
    {
        const auto driven = gain * input.getSample (0, i);
        clipped += std::abs (driven) > threshold ? 1 : 0;
        ASSERT_NEAR (output.getSample (0, i), juce::jlimit (-threshold, threshold, driven), 2.0e-6f) << i;
    }

    EXPECT_GT (clipped, 500);
}

TEST (Program, WritesEveryFormatWithoutLossAndKeepsTheInputsOwn)
{
    const TemporaryFolder temporary;

    for (const auto channels : { 1, 2 })
    {
        writeWav (temporary.file ("in.wav"), smoothNoise (channels, 3001, 1.0f), 96000.0, 16);
        const auto input = readAudio (temporary.file ("in.wav"));

        for (const auto* extension : { ".wav", ".aiff" })
            for (const auto& [format, bits] :
                 { std::pair { "", 16 }, { "16", 16 }, { "24", 24 }, { "32", 32 }, { "float", 32 } })
            {
                juce::StringArray words { "render", "in.wav", juce::String ("out") + extension, "--force" };

                // Bypassed, the audio passes at once, whatever latency is reported.
                words.addArray ({ "--set", "enable=Bypassed", "--set", "oversampling=16x" });
                if (*format != 0)
                    words.addArray ({ "--bits", format });

                const auto run = runHost (temporary, words);
                ASSERT_EQ (run.exitCode, 0) << run.errors;

                const auto output = readAudio (temporary.file (juce::String ("out") + extension));
                EXPECT_EQ (output.bits, bits) << extension << format;
                EXPECT_EQ (output.isFloat, juce::String (format) == "float") << extension << format;
                EXPECT_EQ (output.sampleRate, 96000.0);
                EXPECT_TRUE (output.audio == input.audio) << extension << format;
            }

        // The last AIFF file as input, and back.
        const auto run =
            runHost (temporary, { "render", "out.aiff", "back.wav", "--force", "--set", "enable=Bypassed" });
        ASSERT_EQ (run.exitCode, 0) << run.errors;
        EXPECT_TRUE (readAudio (temporary.file ("back.wav")).audio == input.audio);
    }
}

TEST (Program, RendersFilesOfMixedRatesAndChannelsIntoAFolder)
{
    const TemporaryFolder temporary;
    writeWav (temporary.file ("a.wav"), smoothNoise (1, 4410, 0.5f), 44100.0, 16);
    writeWav (temporary.file ("b.wav"), smoothNoise (2, 900, 0.5f), 96000.0, 24);
    writeWav (temporary.file ("empty.wav"), juce::AudioBuffer<float> (2, 0), 48000.0, 32);

    const auto run = runHost (temporary, { "render", "a.wav", "b.wav", "empty.wav", "done", "--set",
                                           "layout=Multi Band", "--set", "oversampling=8x" });
    ASSERT_EQ (run.exitCode, 0) << run.errors;
    EXPECT_EQ (juce::StringArray::fromLines (run.output.trimEnd()).size(), 4) << run.output;

    for (const auto* name : { "a.wav", "b.wav", "empty.wav" })
    {
        const auto before = readAudio (temporary.file (name));
        const auto after = readAudio (temporary.file (juce::String ("done/") + name));
        EXPECT_EQ (after.audio.getNumChannels(), before.audio.getNumChannels());
        EXPECT_EQ (after.audio.getNumSamples(), before.audio.getNumSamples());
        EXPECT_EQ (after.sampleRate, before.sampleRate);
        EXPECT_EQ (after.bits, before.bits);
    }

    // A file's result does not hang on the files before it.
    ASSERT_EQ (runHost (temporary, { "render", "b.wav", "alone.wav", "--set", "layout=Multi Band", "--set",
                                     "oversampling=8x" })
                   .exitCode,
               0);
    EXPECT_TRUE (readAudio (temporary.file ("alone.wav")).audio
                 == readAudio (temporary.file ("done/b.wav")).audio);
}

TEST (Program, RendersWithAStateAsWithTheSettingsThatMadeIt)
{
    const TemporaryFolder temporary;
    writeWav (temporary.file ("in.wav"), smoothNoise (2, 3000, 0.9f), 48000.0, 32);
    juce::StringArray words { "render", "in.wav", "set.wav" };

    {
        PluginHost host (builtModule());
        for (const auto& [id, value] : { std::pair { "layout", "Left / Right" },
                                         { "threshold_left_channel", "-12.5" },
                                         { "mode_right_channel", "Boost" },
                                         { "in_gain", "9" } })
        {
            host.getParameter (id).setFromText (value);
            words.addArray ({ "--set", juce::String (id) + "=" + value });
        }

        host.prepare (48000.0, 64);
        const auto state = host.getState();
        temporary.file ("it.state").replaceWithData (state.getData(), state.getSize());
    }

    ASSERT_EQ (runHost (temporary, words).exitCode, 0);
    ASSERT_EQ (runHost (temporary, { "render", "in.wav", "state.wav", "--state", "it.state" }).exitCode, 0);
    ASSERT_EQ (runHost (temporary, { "render", "in.wav", "plain.wav" }).exitCode, 0);

    const auto bySettings = readAudio (temporary.file ("set.wav")).audio;
    EXPECT_TRUE (readAudio (temporary.file ("state.wav")).audio == bySettings);
    EXPECT_FALSE (readAudio (temporary.file ("plain.wav")).audio == bySettings);
}

TEST (AudioFileWriter, TouchesNothingUntilItIsFinishedAndNoOldFileUnlessAllowed)
{
    const TemporaryFolder temporary;
    const auto target = temporary.file ("out.wav");
    const auto audio = smoothNoise (1, 100, 0.5f);
    const AudioShape shape { 48000.0, 1, 100, SampleFormat::float32 };
    target.replaceWithText ("old");
    const auto before = temporary.contents();

    {
        AudioFileWriter writer (target, shape);
        writer.write (audio, 100);
    }
    EXPECT_TRUE (temporary.contents() == before);

    for (const auto mayReplace : { false, true })
    {
        AudioFileWriter writer (target, shape);
        writer.write (audio, 100);

        if (mayReplace)
            EXPECT_NO_THROW (writer.finish (true));
        else
            EXPECT_THROW (writer.finish (false), Failure);

        EXPECT_EQ (target.loadFileAsString() == "old", ! mayReplace);
    }

    EXPECT_EQ (temporary.contents().size(), 1);
    EXPECT_TRUE (readAudio (target).audio == audio);
}

TEST (Program, RefusesBadInputInOneLineAndHarmsNoFile)
{
    const TemporaryFolder temporary;
    const auto noise = smoothNoise (1, 500, 0.5f);
    writeWav (temporary.file ("in.wav"), noise, 48000.0, 16);
    writeWav (temporary.file ("old.wav"), noise, 48000.0, 16);
    writeWav (temporary.file ("three.wav"), smoothNoise (3, 500, 0.5f), 48000.0, 16);
    temporary.file ("sub").createDirectory();
    temporary.file ("in.wav").copyFileTo (temporary.file ("sub/in.wav"));
    temporary.file ("text.wav").replaceWithText ("no audio at all");
    temporary.file ("in.wav").createSymbolicLink (temporary.file ("alias.wav"), false);

    juce::MemoryBlock whole;
    temporary.file ("in.wav").loadFileAsData (whole);
    temporary.file ("cut.wav").replaceWithData (whole.getData(), whole.getSize() / 2);
    writeWav (temporary.file ("fast.wav"), noise, 96000.0, 16);

    juce::MemoryBlock state;
    juce::AudioProcessor::copyXmlToBinary (juce::XmlElement ("orvo"), state);
    temporary.file ("cut.state").replaceWithData (state.getData(), state.getSize() - 4);
    juce::AudioProcessor::copyXmlToBinary (juce::XmlElement ("other"), state);
    temporary.file ("other.state").replaceWithData (state.getData(), state.getSize());

    const auto before = temporary.contents();

    const std::vector<std::pair<juce::String, juce::String>> rows {
        { "render missing.wav new.wav", "no such file" },
        { "render sub new.wav", "not a file" },
        { "render text.wav new.wav", "not a WAV or AIFF" },
        { "render cut.wav new.wav", "cut short" },
        { "render three.wav new.wav", "3 channels" },
        { "render in.wav new.wav --set threshold_side=-3", "unknown parameter" },
        { "render in.wav new.wav --set threshold_single=-18.1", "out of range" },
        { "render in.wav new.wav --set in_gain=loud", "takes a number" },
        { "render in.wav new.wav --set in_gain=nan", "takes a number" },
        { "render in.wav new.wav --set layout=Mono", "is one of" },
        { "render in.wav new.wav --set in_gain", "ID=VALUE" },
        { "render in.wav new.wav --set", "needs a value" },
        { "render in.wav new.wav --state text.wav", "not a state" },
        { "state load cut.state", "cut.state: not a state" },
        { "state load other.state", "not a state" },
        { "state load other.state --set in_gain=3", "--set belongs to" },
        { "render in.wav new.wav --state missing", "cannot be read" },
        { "render in.wav new.wav --block 0", "--block takes a number from 1 to 65536," },
        { "bench --seconds 1.2.3", "--seconds takes a number from 0.1 to 600," },
        { "render in.wav new.wav --rate 48000", "--rate" },
        { "render in.wav new.wav --bits 12", "--bits" },
        { "render in.wav new.wav --plugin nowhere.vst3", "no module" },
        { "render in.wav new.wav --loud", "unknown option" },
        { "render in.wav old.wav", "exists already" },
        { "render in.wav in.wav --force", "is an input" },
        { "render in.wav alias.wav --force", "is an input" },
        { "render in.wav new.mp3", "name ends in" },
        { "render in.wav /proc/new.wav", "cannot be written" },
        { "render in.wav sub/in.wav both", "two inputs of this name" },
        { "render in.wav old.wav text.wav", "text.wav" },
        { "render in.wav", "an input and an output" },
        { "picture in.wav fast.wav new.png", "sample rate" },
        { "dance", "unknown command" },
    };

    for (const auto& [words, message] : rows)
    {
        const auto run = runHost (temporary, juce::StringArray::fromTokens (words, false));

        EXPECT_GT (run.exitCode, 0) << words;
        EXPECT_EQ (juce::StringArray::fromLines (run.errors.trimEnd()).size(), 1)
            << words << ": " << run.errors;
        EXPECT_TRUE (run.errors.startsWith ("orvo-host: ") && run.errors.contains (message))
            << words << ": " << run.errors;
        EXPECT_TRUE (temporary.contents() == before) << words;
    }
}

TEST (Program, PrintsItsTablesAndDrawsAPicture)
{
    const TemporaryFolder temporary;
    const auto linesOf = [&] (const juce::String& words, const juce::String& start)
    {
        const auto run = runHost (temporary, juce::StringArray::fromTokens (words, false));
        EXPECT_EQ (run.exitCode, 0) << run.errors;
        auto count = 0;
        for (const auto& line : juce::StringArray::fromLines (run.output))
            count += line.matchesWildcard (start, false) ? 1 : 0;
        return count;
    };

    EXPECT_EQ (linesOf ("info", "class"), 3);
    EXPECT_EQ (linesOf ("info", "*accepted"), 2);
    EXPECT_EQ (linesOf ("params", "* (wrapper) *"), 1);
    EXPECT_EQ (linesOf ("params", "*dB*dB*dB*dB"), 19);
    EXPECT_EQ (linesOf ("bench --seconds 0.1", "* ns *x * ns *x"), 20);

    const auto preset = tessarin::getConfigFolder().getChildFile ("Presets/User/Mine.tpre");
    preset.create();
    preset.replaceWithText ("<orvo categories=\"Bass\" description=\"one&#10;two\"/>");
    EXPECT_EQ (linesOf ("presets", "  Mine * Bass * one two"), 1);
    preset.deleteFile();

    writeWav (temporary.file ("in.wav"), smoothNoise (2, 4000, 0.9f), 48000.0, 16);
    EXPECT_EQ (runHost (temporary, { "picture", "in.wav", "in.wav", "it.png" }).exitCode, 0);

    const auto picture = juce::ImageFileFormat::loadFrom (temporary.file ("it.png"));
    ASSERT_TRUE (picture.isValid());

    // In the middle of the upper lane the loud waveform covers the ground.
    EXPECT_EQ (picture.getBounds(), juce::Rectangle<int> (1400, 600));
    EXPECT_NE (picture.getPixelAt (500, 160), picture.getPixelAt (500, 52));
}
} // namespace
