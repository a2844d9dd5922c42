// What the commands of orvo-host refuse, and what they leave alone then.

#include "CommandsUnderTest.h"

#include <juce_audio_processors/juce_audio_processors.h>

namespace
{
TEST_F (Commands, RefuseBadInputInOneLineAndHarmNoFile)
{
    const auto noise = smoothNoise (1, 500, 0.5f);
    writeWav (temporary.file ("in.wav"), noise, 48000.0, 16);
    writeWav (temporary.file ("old.wav"), noise, 48000.0, 16);
    writeWav (temporary.file ("other.wav"), noise, 44100.0, 16);
    writeWav (temporary.file ("longer.wav"), smoothNoise (1, 501, 0.5f), 48000.0, 16);
    writeWav (temporary.file ("stereo.wav"), smoothNoise (2, 500, 0.5f), 48000.0, 16);
    writeWav (temporary.file ("three.wav"), smoothNoise (3, 500, 0.5f), 48000.0, 16);
    writeWav (temporary.file ("slow.wav"), noise, 7999.0, 16);
    writeWav (temporary.file ("fast.wav"), noise, 768000.0, 16);
    writeWav (temporary.file ("empty.wav"), juce::AudioBuffer<float> (1, 0), 48000.0, 16);
    temporary.file ("sub").createDirectory();
    temporary.file ("in.wav").copyFileTo (temporary.file ("sub/in.wav"));
    temporary.file ("text.wav").replaceWithText ("no audio at all");
    temporary.file ("old.png").replaceWithText ("no picture");
    temporary.file ("in.wav").createSymbolicLink (temporary.file ("alias.wav"), false);

    juce::MemoryBlock whole, foreign;
    for (const juce::String ending : { "wav", "aiff", "rf64", "w64", "flac" })
    {
        EXPECT_EQ (run ("render stereo.wav whole." + ending).errors, "");
        temporary.file ("whole." + ending).loadFileAsData (whole);
        temporary.file ("cut." + ending).replaceWithData (whole.getData(), whole.getSize() - 400);
        temporary.file ("head." + ending).replaceWithData (whole.getData(), 16);
        whole.reset();
    }

    // With A-law's number and size in the header.
    temporary.file ("whole.wav").loadFileAsData (whole);
    for (const auto& [at, byte] : { std::pair { 20, 6 }, { 32, 2 }, { 34, 8 } })
        whole[at] = static_cast<char> (byte);
    temporary.file ("law.wav").replaceWithData (whole.getData(), whole.getSize());
    temporary.file ("nothing.flac").create();
    juce::AudioProcessor::copyXmlToBinary (juce::XmlElement ("other"), foreign);
    temporary.file ("foreign.state").replaceWithData (foreign.getData(), foreign.getSize());
    temporary.file ("cut.state").replaceWithText ("VC2!");

    struct
    {
        int exitCode;
        const char *words, *message;
    } const rows[] {
        { 1, "render missing.wav new.wav", "no such file" },
        { 1, "render sub new.wav", "not a file" },
        { 1, "render text.wav new.wav", "not a WAV, AIFF, RF64, W64, CAF or FLAC" },
        { 1, "render nothing.flac new.wav", "not a WAV" },
        { 1, "render law.wav new.wav", "samples of the kind \"A-Law\"" },
        { 1, "render three.wav new.wav", "3 channels" },
        { 1, "render slow.wav new.wav", "7999 Hz" },
        { 1, "render in.wav new.wav --set threshold_side=-3", "unknown parameter" },
        { 1, "render in.wav new.wav --set threshold_single=-18.1", "out of range" },
        { 1, "render in.wav new.wav --set shape_post=101%", "out of range" },
        { 1, "render in.wav new.wav --set in_gain=loud", "takes a number" },
        { 1, "render in.wav new.wav --set in_gain=3Hz", "takes a number" },
        { 1, "render in.wav new.wav --set in_gain=nan", "takes a number" },
        { 1, "render in.wav new.wav --set layout=Mono", "is one of \"Single Band\", \"Multi Band\"" },
        { 2, "render in.wav new.wav --set in_gain", "ID=VALUE" },
        { 2, "render in.wav new.wav --set", "needs a value" },
        { 1, "render in.wav new.wav --preset Nobody", "no preset \"Nobody\"" },
        { 1, "render in.wav new.wav --state text.wav", "not a state" },
        { 1, "render in.wav new.wav --state foreign.state", "not a state" },
        { 1, "render in.wav new.wav --state cut.state", "not a state" },
        { 1, "render in.wav new.wav --state missing", "cannot be read" },
        { 2, "render in.wav new.wav --block 0", "--block takes a number from 1 to 65536" },
        { 2, "render in.wav new.wav --block 1.5", "whole number" },
        { 2, "render in.wav new.wav --bits 12", "--bits is one of 16, 24, 32, float" },
        { 1, "render in.wav new.wav --plugin nowhere.vst3", "no module" },
        { 1, "render in.wav new.wav --plugin sub", "not a VST3 module" },
        { 2, "render in.wav new.wav --loud", "unknown option" },
        { 1, "render in.wav old.wav", "exists already" },
        { 1, "render in.wav in.wav --force", "is an input" },
        { 1, "render in.wav alias.wav --force", "is an input" },
        { 1, "render in.wav new.mp3", "name ends in" },
        { 1, "render in.wav new.flac --bits 32", "16 or 24 bits" },
        { 1, "render in.wav new.flac --bits float", "16 or 24 bits" },
        { 1, "render empty.wav new.flac", "at least one frame" },
        { 1, "render fast.wav new.flac", "655350" },
        { 1, "render in.wav none/new.wav", "no such folder" },
        { 1, "render in.wav /proc/new.wav", "cannot be written" },
        { 1, "render in.wav sub/in.wav both", "two inputs of this name" },
        { 1, "render in.wav old.wav text.wav", "text.wav" },
        { 2, "render in.wav", "an input and an output" },
        { 2, "picture in.wav old.wav", "two audio files and a PNG file" },
        { 1, "picture in.wav old.wav new.jpg", "ends in .png" },
        { 1, "picture in.wav old.wav old.png", "exists already" },
        { 1, "picture in.wav longer.wav new.png", "differ in length" },
        { 1, "picture in.wav stereo.wav new.png", "differ in length, channels" },
        { 1, "picture in.wav other.wav new.png", "sample rate" },
        { 1, "picture empty.wav empty.wav new.png", "up to half an hour" },
        { 2, "loudness", "one file or more" },
        { 1, "loudness in.wav text.wav", "text.wav" },
        { 2, "state", "save FILE" },
        { 2, "state keep it", "load FILE" },
        { 2, "state load in.wav --set in_gain=3", "belongs to" },
        { 1, "state load sub", "cannot be read" },
        { 1, "state save old.wav", "exists already" },
        { 1, "state save sub --force", "cannot be written" },
        { 1, "state save none/new.state", "cannot be written" },
        { 2, "bench --seconds 0.05", "--seconds takes a number from 0.1 to 600" },
        { 2, "bench --seconds 601", "--seconds" },
        { 2, "bench --seconds 0.1.2", "--seconds" },
        { 2, "open --theme Dark", "Default, Ice, Night, TwentyTwenty" },
        { 2, "open --scale 0.4", "from 0.5 to 4" },
        { 1, "open --play text.wav", "not a WAV" },
        { 1, "open --play empty.wav", "up to half an hour" },
        { 2, "info twice", "options alone" },
        { 1, "params --plugin text.wav", "not a VST3 module" },
        { 2, "dance", "unknown command \"dance\"" },
        { 2, "", "no command" },
    };

    const auto before = temporary.contents();
    const auto expectRefusal = [&] (const juce::String& words, int exitCode, const juce::String& message)
    {
        SCOPED_TRACE (words.toStdString());
        const auto result = run (words);
        const auto& errors = result.errors;
        EXPECT_EQ (result.exitCode, exitCode) << errors;
        EXPECT_EQ (linesOf (errors).size(), 1) << errors;
        EXPECT_TRUE (errors.startsWith ("orvo-host: ") && errors.contains (message)) << errors;
        EXPECT_TRUE (result.output.isEmpty() || result.output.startsWith ("file  ")) << result.output;
        EXPECT_TRUE (temporary.contents() == before);
    };

    for (const auto& [exitCode, words, message] : rows)
        expectRefusal (words, exitCode, message);

    for (const juce::String ending : { "wav", "aiff", "rf64", "w64", "flac" })
    {
        expectRefusal ("render cut." + ending + " new.wav", 1, "is cut short");
        expectRefusal ("render head." + ending + " new.wav", 1, "not a WAV");
    }

    config.preset ("").deleteRecursively();
    config.file ("Presets").create();
    expectRefusal ("presets", 1, "there are no presets");
}
} // namespace
