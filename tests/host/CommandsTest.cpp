// The commands of orvo-host, and orvo-bank, as a user meets them: what they print, draw, save and refuse.

#include "../core/ExpectedParameters.h"
#include "../support/TemporaryConfig.h"
#include "HostTestSupport.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace
{
const juce::File trackedBank (ORVO_PRESETS);

/** Presets as an installation has them. */
struct Installation
{
    Installation() { trackedBank.copyDirectoryTo (config.preset ("Factory")); }

    TemporaryConfig config;
    WorkFolder temporary;

    ProgramRun run (const juce::String& words) const
    {
        auto list = juce::StringArray::fromTokens (words, " ", "'");
        list.removeEmptyStrings();
        for (auto& word : list)
            word = word.removeCharacters ("'");
        return runHost (temporary, list);
    }

    juce::StringArray lines (const juce::String& words) const
    {
        const auto result = run (words);
        EXPECT_EQ (result.exitCode, 0) << words << ": " << result.errors;
        EXPECT_EQ (result.errors, "") << words;
        return linesOf (result.output);
    }
};

std::vector<juce::File> sortedPresets()
{
    auto files = trackedBank.findChildFiles (juce::File::findFiles, true, "*.tpre");
    std::vector<juce::File> sorted (files.begin(), files.end());
    std::sort (sorted.begin(), sorted.end(),
               [] (const auto& a, const auto& b)
               { return a.getFullPathName().compareIgnoreCase (b.getFullPathName()) < 0; });
    return sorted;
}

/** Of a table whose columns are padded with at least one blank. */
juce::StringArray cellsOf (const juce::String& line, const std::vector<int>& starts)
{
    juce::StringArray cells;

    for (size_t i = 0; i < starts.size(); ++i)
        cells.add (line.substring (starts[i], i + 1 < starts.size() ? starts[i + 1] : line.length()).trim());

    return cells;
}

TEST (Commands, InfoAndParamsTellWhatTheModuleIs)
{
    const Installation installation;

    const juce::StringArray identity { "name Orvo", "vendor Tessarin", "version 1.0.1",
                                       "sdk version VST 3.7.12", "cardinality 0x7fffffff" };
    juce::StringArray expected { "factory", "vendor Tessarin" };
    const auto info = installation.lines ("info");
    EXPECT_TRUE (info[2].contains ("https://") && info[3].contains ("@"));
    expected.addArray (info, 2, 2);
    expected.add ("flags 16");

    for (const auto& [category, id] : { std::pair { "Audio Module", "ABCDEF019182FAEB546553614F72566F" },
                                        { "Component Controller", "ABCDEF011234ABCD546553614F72566F" },
                                        { "Plugin Compatibility", "ABCDEF01C0DEF00D546553614F72566F" } })
    {
        expected.addArray ({ "class", "category " + juce::String (category) + " Class",
                             juce::String (category) == "Plugin Compatibility"
                                 ? "sub-categories"
                                 : "sub-categories Fx|Distortion" });
        expected.addArray (identity);
        expected.add ("class id " + juce::String (id));
    }

    expected.addArray ({ "buses", "input \"Input\", Stereo, active", "output \"Output\", Stereo, active",
                         "1 in, 1 out accepted", "2 in, 2 out accepted", "1 in, 2 out refused",
                         "2 in, 1 out refused", "3 in, 3 out refused", "behaviour", "latency 0 samples",
                         "tail 0 s", "midi no", "double precision no", "editor yes",
                         "parameters 70 and 2 of the wrapper",
                         "programs " + juce::String (sortedPresets().size() + 1) });

    const auto withoutBlanks = [] (const juce::StringArray& list)
    { return list.joinIntoString ("\n").removeCharacters (" "); };
    EXPECT_EQ (withoutBlanks (info), withoutBlanks (expected));

    // Texts at both ends, by the ID's beginning.
    const std::map<std::string, std::pair<const char*, const char*>> ends {
        { "enable", { "Bypassed", "Enabled" } },
        { "threshold_", { "-18.0dB", "0.0dB" } },
        { "shape_", { "0%", "100%" } },
        { "mode_", { "Hard", "Boost" } },
        { "gain_", { "-18.0dB", "18.0dB" } },
        { "enable_", { "Off", "On" } },
        { "mute_", { "Unmuted", "Muted" } },
        { "link_", { "Unlinked", "Linked" } },
        { "crossover_low", { "60.0Hz", "1000.0Hz" } },
        { "crossover_high", { "2000.0Hz", "10000.0Hz" } },
        { "solo_band", { "Low", "None" } },
        { "layout", { "Single Band", "Left / Right" } },
        { "in_gain", { "-18.0dB", "18.0dB" } },
        { "oversampling", { "Off", "16x" } }
    };
    const auto table = installation.lines ("params");
    const auto parameters = expected::parameters();
    ASSERT_EQ (table.size(), 73);
    std::vector<int> starts;
    for (const auto* title : { "#", "id", "title", "default", "now", "least", "most" })
        starts.push_back (table[0].indexOf (title));

    for (auto i = 0; i < 70; ++i)
    {
        const auto& [id, name, min, max, value, text] = parameters[static_cast<size_t> (i)];
        const auto& [least, most] =
            ends.contains (id) ? ends.at (id) : ends.at (id.substr (0, id.find ('_') + 1));
        EXPECT_EQ (cellsOf (table[i + 1], starts),
                   (juce::StringArray { juce::String (i), id, name, text, text, least, most }));
    }

    EXPECT_EQ (cellsOf (table[71], starts),
               (juce::StringArray { "70", "(wrapper)", "Bypass", "Off", "Off", "Off", "On" }));
    EXPECT_EQ (cellsOf (table[72], starts)[2], "Program");
}

TEST (Commands, PresetsAreListedByFolderWithWhatTheirFilesSay)
{
    const Installation installation;
    installation.config.addPreset ("User/Mine.tpre", stateText ({}, "description=\"Two&#10;lines\""));
    const auto listed = installation.lines ("presets");
    juce::StringArray expected { "Factory", "  Initial Patch" };
    juce::String folder;

    for (const auto& file : sortedPresets())
    {
        const auto xml = juce::parseXML (file);
        const auto own = file.getParentDirectory().getFileName();

        if (own != folder)
            expected.addArray (juce::StringArray { "", "Factory/" + (folder = own) });

        expected.add ("  " + file.getFileNameWithoutExtension().paddedRight (' ', 26) + ' '
                      + xml->getStringAttribute ("categories").paddedRight (' ', 26) + ' '
                      + xml->getStringAttribute ("description"));
    }

    expected.addArray (
        juce::StringArray { "", "User", juce::String ("  Mine").paddedRight (' ', 56) + "Two lines" });

    ASSERT_EQ (listed.size(), expected.size());
    for (auto i = 0; i < listed.size(); ++i)
        EXPECT_TRUE (i == 1 ? listed[i].startsWith (expected[i]) : listed[i] == expected[i]) << listed[i];
}

TEST (Commands, StateSavesWhatItLoadsAndPrintsWhatDiffers)
{
    const Installation installation;
    const auto file = installation.temporary.file ("it.state");
    const auto save = [&] (const juce::String& words)
    { return installation.lines ("state save it.state --force " + words); };
    const auto load = [&] { return installation.lines ("state load it.state").joinIntoString (" "); };

    // Presets come first, then states, then single values.
    struct
    {
        const char *words, *differing;
    } const cases[] {
        { "", "" },
        { "--set layout=2 --set in_gain=-3.5 --set in_gain=4.5 --set shape_post=0.25 --set enable=bypassed",
          "enable=Bypassed shape_post=25% layout=Mid / Side in_gain=4.5dB" },
        { "--set mode_single=boost --set gain_single=+2db --set oversampling=16X --set mute_low_band=1",
          "mute_low_band=Muted mode_single=Boost gain_single=2.0dB oversampling=16x" },
        { "--set gain_single=5 --state it.state --preset Telephone --set solo_band=Mid",
          "mute_low_band=Muted mode_single=Boost gain_single=5.0dB solo_band=Mid oversampling=16x" },
        { "--set threshold_single=-18 --set gain_low_band=18 --set shape_mid_band=100%",
          "gain_low_band=18.0dB shape_mid_band=100% threshold_single=-18.0dB" },
        { "--set in_gain=-1 --preset 'Bass Wall'",
          "threshold_single=-6.0dB mode_single=Hard gain_single=5.0dB threshold_post=-1.0dB shape_post=60% "
          "mode_post=Pressure in_gain=-1.0dB oversampling=8x" },
        { "--preset 'Factory/Bass/Growl On Top'",
          "enable_low_band=Off threshold_mid_band=-15.0dB mode_mid_band=Hard gain_mid_band=4.0dB "
          "threshold_high_band=-18.0dB shape_high_band=30% gain_high_band=2.0dB crossover_low=140.0Hz "
          "crossover_high=2500.0Hz layout=Multi Band in_gain=3.0dB oversampling=8x" },
    };

    for (const auto& [words, differing] : cases)
    {
        const auto printed = save (words);
        EXPECT_EQ (printed.joinIntoString ("|"),
                   file.getFullPathName() + ": " + juce::String (file.getSize()) + " bytes");
        EXPECT_EQ (load(), differing) << words;
    }
}

TEST (Commands, BenchMeasuresEveryLayoutAndFactorInBothUnits)
{
    const Installation installation;
    const auto lines = installation.lines ("bench --seconds 0.1");
    ASSERT_EQ (lines.size(), 22);

    for (auto row = 0; row < 20; ++row)
    {
        const auto& line = lines[row + 2];
        SCOPED_TRACE (line);
        const char* const layouts[] { "Single Band", "Multi Band", "Mid / Side", "Left / Right" };
        const char* const factors[] { "Off", "2x", "4x", "8x", "16x" };
        auto cells = juce::StringArray::fromTokens (line.substring (26), " ", "");
        cells.removeEmptyStrings();
        ASSERT_EQ (cells.size(), 8);
        EXPECT_EQ (line.substring (0, 14).trim(), layouts[row / 5]);
        EXPECT_EQ (line.substring (14, 26).trim(), factors[row % 5]);
        EXPECT_EQ (cells[1] + cells[3] + cells[5] + cells[7], "nsxnsx");

        // A frame at 48 kHz lasts 20833.3 ns.
        for (const auto at : { 0, 4 })
        {
            const auto nanoseconds = cells[at].getDoubleValue(), speed = cells[at + 2].getDoubleValue();
            EXPECT_GT (nanoseconds, 0.5);
            EXPECT_NEAR (nanoseconds * speed, 1.0e9 / 48000.0, 0.06 * (nanoseconds + speed));
        }
    }
}

TEST (Commands, PictureShowsBothFilesInTheirLanesColoursAndLevels)
{
    const Installation installation;

    // Left goes up and right goes down by half as much, for half a second; then one sample stands out.
    for (const auto& [name, amplitude] : { std::pair { "before.wav", 0.8f }, { "after.wav", 0.4f } })
    {
        juce::AudioBuffer<float> audio (2, 48000);
        audio.clear();
        for (auto i = 0; i < 24000; i += 2)
        {
            audio.setSample (0, i, amplitude);
            audio.setSample (1, i, -0.5f * amplitude);
        }
        audio.setSample (0, 36000, 1.2f * amplitude);
        writeWav (installation.temporary.file (name), audio, 48000.0, 16);
    }

    EXPECT_TRUE (installation.lines ("picture before.wav after.wav it.png")[0].isEmpty());
    const auto picture = juce::ImageFileFormat::loadFrom (installation.temporary.file ("it.png"));
    ASSERT_EQ (picture.getBounds(), juce::Rectangle<int> (1400, 600));

    // Lanes of 840 x 220 pixels with 5 % of room beyond full scale: the first lies above the second.
    const auto pixelAt = [&] (int centre, double position, double amplitude)
    {
        return picture.getPixelAt (80 + juce::roundToInt (840.0 * position),
                                   juce::roundToInt (centre - amplitude * 220.0 / 2.1));
    };
    const auto before = pixelAt (160, 0.25, 0.1), after = pixelAt (435, 0.25, 0.1),
               ground = pixelAt (160, 0.25, 0.92);
    EXPECT_LT (before.getSaturation(), 0.3f) << "grey";
    EXPECT_GT (after.getSaturation(), 0.7f) << "orange";
    EXPECT_LT (ground.getBrightness(), 0.3f);

    for (const auto& [amplitude, isBefore, isAfter] : { std::tuple { 0.7, true, false },
                                                        { 0.45, true, false },
                                                        { 0.3, true, true },
                                                        { -0.1, true, true },
                                                        { -0.3, true, false },
                                                        { -0.45, false, false } })
    {
        EXPECT_EQ (pixelAt (160, 0.2, amplitude), isBefore ? before : ground) << amplitude;
        EXPECT_EQ (pixelAt (435, 0.2, amplitude), isAfter ? after : ground) << amplitude;
        EXPECT_EQ (pixelAt (160, 0.6, amplitude), ground) << amplitude;
    }

    EXPECT_EQ (pixelAt (160, 0.75, 0.7), before) << "one sample is seen too";
    EXPECT_EQ (pixelAt (435, 0.75, 0.4), after);

    // 12 ms about that sample, the second file over the first: in how many columns is a colour at that height?
    const auto inZoom = [&] (double amplitude, juce::Colour colour)
    {
        auto count = 0;
        for (auto x = 980; x < 1370; ++x)
            if (picture.getPixelAt (x, juce::roundToInt (297.2 - amplitude * 495.0 / 2.1)) == colour)
                count += std::abs (x - 1175) < 8 ? 1 : 1000;
        return count;
    };
    EXPECT_TRUE (juce::isPositiveAndBelow (inZoom (0.7, before) - 1, 15)) << "there alone";
    EXPECT_TRUE (juce::isPositiveAndBelow (inZoom (0.3, after) - 1, 15));
    EXPECT_EQ (inZoom (0.7, after), 0);
    EXPECT_GT (inZoom (0.0, after), 300000);

    // The levels stand on the right above each lane: the same for the same file, and others for another.
    const auto levels = [] (const juce::Image& image, int top)
    {
        juce::String pixels;
        for (auto i = 0; i < 420 * 18; ++i)
            pixels << image.getPixelAt (500 + i % 420, top + i / 420).toString();
        return pixels;
    };
    installation.lines ("picture before.wav before.wav it.png --force");
    const auto same = juce::ImageFileFormat::loadFrom (installation.temporary.file ("it.png"));
    EXPECT_TRUE (levels (same, 25) == levels (picture, 25) && levels (same, 300) == levels (picture, 25));
    EXPECT_FALSE (levels (picture, 300) == levels (picture, 25));

    // Below that on the right stands when the loudest moment is.
    juce::AudioBuffer<float> early (2, 48000);
    early.clear();
    early.setSample (0, 12000, 1.0f);
    writeWav (installation.temporary.file ("early.wav"), early, 48000.0, 16);
    installation.lines ("picture early.wav early.wav it.png --force");
    const auto other = juce::ImageFileFormat::loadFrom (installation.temporary.file ("it.png"));
    const auto times = [] (const juce::Image& image)
    {
        juce::String pixels;
        for (auto i = 0; i < 420 * 20; ++i)
            pixels << image.getPixelAt (960 + i % 420, 550 + i / 420).toString();
        return pixels;
    };
    EXPECT_TRUE (times (same) == times (picture));
    EXPECT_FALSE (times (other) == times (picture));
}

TEST (Commands, HelpNamesTheCommandsAndTheOptionsThatTheyTake)
{
    const Installation installation;
    const auto overview = installation.lines ("--help");
    EXPECT_EQ (overview.joinIntoString ("|"), installation.lines ("-h").joinIntoString ("|"));
    EXPECT_EQ (overview.size(), 13);

    for (const juce::String usage : { "info", "params", "render IN [IN...] OUT", "bench", "presets",
                                      "picture BEFORE AFTER OUT.png", "state save|load FILE", "open" })
    {
        const auto command = usage.upToFirstOccurrenceOf (" ", false, false);
        const auto help = installation.lines (command + " --help");
        EXPECT_EQ (help[0], ("usage: orvo-host " + command + " [OPTIONS] "
                             + usage.fromFirstOccurrenceOf (" ", false, false))
                                .trimEnd());
        EXPECT_TRUE (overview.contains ("  " + command.paddedRight (' ', 10) + help[1])) << command;

        for (const auto& line : help)
        {
            if (! line.startsWith ("  --"))
                continue;

            const auto words = juce::StringArray::fromTokens (line.trim(), " ", "");
            const auto refusal = words[1].isNotEmpty() ? words[0] + " needs a value: " + words[1]
                                                       : juce::String ("unknown option --none");
            EXPECT_GT (line.substring (24).length(), 10) << line;
            EXPECT_EQ (
                installation.run (command + " " + words[0] + (words[1].isEmpty() ? " --none" : "")).errors,
                "orvo-host: " + refusal + "\n");
        }
    }
}

TEST (Commands, RefuseBadInputInOneLineAndHarmNoFile)
{
    const Installation installation;
    const auto& temporary = installation.temporary;
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
        EXPECT_EQ (installation.run ("render stereo.wav whole." + ending).errors, "");
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
        { 1, "render text.wav new.wav", "not a WAV, AIFF, RF64, W64 or FLAC" },
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
        const auto run = installation.run (words);
        EXPECT_EQ (run.exitCode, exitCode) << run.errors;
        EXPECT_EQ (linesOf (run.errors).size(), 1) << run.errors;
        EXPECT_TRUE (run.errors.startsWith ("orvo-host: ") && run.errors.contains (message)) << run.errors;
        EXPECT_TRUE (run.output.isEmpty() || run.output.startsWith ("file  ")) << run.output;
        EXPECT_TRUE (temporary.contents() == before);
    };

    for (const auto& [exitCode, words, message] : rows)
        expectRefusal (words, exitCode, message);

    for (const juce::String ending : { "wav", "aiff", "rf64", "w64", "flac" })
    {
        expectRefusal ("render cut." + ending + " new.wav", 1, "is cut short");
        expectRefusal ("render head." + ending + " new.wav", 1, "not a WAV");
    }

    installation.config.preset ("").deleteRecursively();
    expectRefusal ("presets", 1, "no presets are installed");
}

TEST (Commands, BankWritesTheTrackedPresetsAndTouchesNothingElse)
{
    const Installation installation;
    const auto& temporary = installation.temporary;
    const auto contentsOf = [] (const juce::File& folder)
    {
        std::map<juce::String, juce::String> contents;
        for (const auto& file : folder.findChildFiles (juce::File::findFiles, true))
            if (file.getFileName() != ".gitattributes")
                contents[file.getRelativePathFrom (folder)] = file.loadFileAsString();
        return contents;
    };

    ASSERT_EQ (runProgram (temporary, { ORVO_BANK, "bank" }).exitCode, 0);
    EXPECT_EQ (contentsOf (temporary.file ("bank")), contentsOf (trackedBank));
    EXPECT_FALSE (installation.config.file ("log.log").exists()) << "the user's folder is not its own";

    EXPECT_EQ (runProgram (temporary, { ORVO_BANK }).exitCode, 2);
    EXPECT_EQ (runProgram (temporary, { ORVO_BANK, "/proc/bank" }).exitCode, 1);
}
} // namespace
