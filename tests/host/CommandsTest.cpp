// What the commands print and save, and orvo-bank, as a user meets them.

#include "../core/ExpectedParameters.h"
#include "CommandsUnderTest.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <cmath>

namespace
{
juce::Array<juce::File> sortedPresets()
{
    auto files = trackedBank.findChildFiles (juce::File::findFiles, true, "*.tpre");
    const auto precedes = [] (const juce::File& a, const juce::File& b)
    { return a.getFullPathName().compareIgnoreCase (b.getFullPathName()) < 0; };

    std::sort (files.begin(), files.end(), precedes);
    return files;
}

/** Of a table whose columns are padded with at least one blank. */
juce::StringArray cellsOf (const juce::String& line, const std::vector<int>& starts)
{
    juce::StringArray cells;

    for (size_t i = 0; i < starts.size(); ++i)
        cells.add (line.substring (starts[i], i + 1 < starts.size() ? starts[i + 1] : line.length()).trim());

    return cells;
}

TEST_F (Commands, InfoAndParamsTellWhatTheModuleIs)
{
    const juce::StringArray identity { "name Orvo", "vendor Tessarin", "version 1.0.1",
                                       "sdk version VST 3.7.12", "cardinality 0x7fffffff" };
    juce::StringArray expected { "factory", "vendor Tessarin" };
    const auto info = lines ("info");
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

    const auto table = lines ("params");
    const auto parameters = expected::parameters();
    ASSERT_EQ (table.size(), 73);
    std::vector<int> starts;
    for (const auto* title : { "#", "id", "title", "default", "now", "least", "most" })
        starts.push_back (table[0].indexOf (title));

    for (auto i = 0; i < 70; ++i)
    {
        const auto& row = parameters[static_cast<size_t> (i)];
        EXPECT_EQ (cellsOf (table[i + 1], starts),
                   (juce::StringArray { juce::String (i), row.id, row.name, row.text, row.text, row.least,
                                        row.most }));
    }

    EXPECT_EQ (cellsOf (table[71], starts),
               (juce::StringArray { "70", "(wrapper)", "Bypass", "Off", "Off", "Off", "On" }));
    EXPECT_EQ (cellsOf (table[72], starts)[2], "Program");
}

TEST_F (Commands, PresetsAreListedByFolderWithWhatTheirFilesSay)
{
    config.addPreset ("User/Mine.tpre", stateText ({}, "description=\"Two&#10;lines\""));
    const auto listed = lines ("presets");
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

TEST_F (Commands, StateSavesWhatItLoadsAndPrintsWhatDiffers)
{
    const auto file = temporary.file ("it.state");
    const auto save = [&] (const juce::String& words)
    { return lines ("state save it.state --force " + words); };
    const auto load = [&] { return lines ("state load it.state").joinIntoString (" "); };

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

TEST_F (Commands, BenchMeasuresEveryLayoutAndFactorInBothUnits)
{
    const auto table = lines ("bench --seconds 0.1");
    ASSERT_EQ (table.size(), 22);

    for (auto row = 0; row < 20; ++row)
    {
        const auto& line = table[row + 2];
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

TEST_F (Commands, HelpNamesTheCommandsAndTheOptionsThatTheyTake)
{
    const auto overview = lines ("--help");
    EXPECT_EQ (overview.joinIntoString ("|"), lines ("-h").joinIntoString ("|"));
    EXPECT_EQ (overview.size(), 16);
    const auto page = lines ("document man");

    for (const juce::String usage :
         { "info", "params", "render IN [IN...] OUT", "master IN [IN...] OUT", "bench", "presets",
           "picture BEFORE AFTER OUT.png", "loudness FILE [FILE...]", "state save|load FILE", "open",
           "document man|bash" })
    {
        const auto command = usage.upToFirstOccurrenceOf (" ", false, false);
        const auto help = lines (command + " --help");
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
            EXPECT_TRUE (page.joinIntoString ("\n").contains (".B " + words[0].replace ("-", "\\-"))) << line;
            EXPECT_EQ (run (command + " " + words[0] + (words[1].isEmpty() ? " --none" : "")).errors,
                       "orvo-host: " + refusal + "\n");
        }
    }
}

TEST_F (Commands, TheShellCompletesCommandsOptionsAndTheirValues)
{
    temporary.file ("notes of today.wav").create();
    temporary.file ("completion")
        .replaceWithText (lines ("document bash").joinIntoString ("\n"), false, false, "\n");

    for (const auto& [words, expected] : { std::pair { "sta", "state" },
                                           { "render --s", "--state|--set" },
                                           { "render --bits ''", "16|24|32|float" },
                                           { "render in.wav --preset x --fo", "--force" },
                                           { "state l", "load" },
                                           { "render no", "notes of today.wav" },
                                           { "document m", "man" },
                                           { "render --block no", "" },
                                           { "open --play no", "notes of today.wav" } })
    {
        temporary.file ("ask").replaceWithText (
            "source ./completion\nCOMP_WORDS=(orvo-host " + juce::String (words)
                + ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_orvo_host\nIFS='|'; echo \"${COMPREPLY[*]}\"\n",
            false, false, "\n");
        EXPECT_EQ (runProgram (temporary, "bash ask").output, juce::String (expected) + "\n") << words;
    }
}

TEST_F (Commands, LoudnessReadsWhatTonesOfKnownLevelsHave)
{
    // A sine of 1 kHz in both channels is as loud as its peak; in one channel 3.01 LU less.
    const struct
    {
        juce::String name;
        int channels;
        std::vector<std::pair<double, double>> steps; // level in dB and seconds
        std::vector<double> expected;                 // by column, within 0.1
    } files[] {
        { "gate.wav", 2, { { -36, 10 }, { -23, 60 }, { -36, 10 } }, { -23, -36, -23, -36, -23 } },
        { "mono.wav", 1, { { -20, 40 } }, { -23, -23, -23, -23, -23, 0 } },
        { "range.wav", 2, { { -20, 20 }, { -30, 20 } }, { -22.6, -30, -20, -30, -20, 10 } },
        { "end.wav", 2, { { -20, 4 }, { -200, 0.2 } }, { -20.2, -23, -20, -20.3, -20 } },
        { "nothing.wav", 2, { { -200, 1 } }, {} },
    };

    juce::String words ("loudness");

    for (const auto& file : files)
    {
        auto frames = 0;
        for (const auto& step : file.steps)
            frames += juce::roundToInt (48000.0 * step.second);

        juce::AudioBuffer<float> audio (file.channels, frames);
        auto at = 0;
        for (const auto& [level, seconds] : file.steps)
            for (const auto end = at + juce::roundToInt (48000.0 * seconds); at < end; ++at)
                for (auto channel = 0; channel < file.channels; ++channel)
                    audio.setSample (
                        channel, at,
                        static_cast<float> (std::pow (10.0, 0.05 * level)
                                            * std::sin (juce::MathConstants<double>::twoPi * at / 48.0)));

        writeWav (temporary.file (file.name), audio, 48000.0, 32);
        words << ' ' << file.name;
    }

    const auto table = lines (words);
    ASSERT_EQ (table.size(), 6);

    for (auto row = 0; row < 5; ++row)
    {
        const auto& [name, channels, steps, expected] = files[row];
        auto cells = juce::StringArray::fromTokens (table[row + 1], " ", "");
        cells.removeEmptyStrings();
        ASSERT_EQ (cells.size(), 7) << table[row + 1];
        EXPECT_EQ (cells[0], name);

        for (size_t i = 0; i < expected.size(); ++i)
            EXPECT_NEAR (cells[static_cast<int> (i) + 1].getDoubleValue(), expected[i], 0.1)
                << table[row + 1];

        EXPECT_EQ (cells.joinIntoString (" ").endsWith (".wav - - - - - -"), expected.empty());
    }
}

TEST_F (Commands, BankWritesTheTrackedPresetsAndTouchesNothingElse)
{
    const juce::String bank (ORVO_BANK " ");
    ASSERT_EQ (runProgram (temporary, bank + "bank").exitCode, 0);
    const auto diff = runProgram (temporary, "diff -r -x .gitattributes bank '" ORVO_PRESETS "'");
    EXPECT_EQ (diff.exitCode, 0) << diff.output;
    EXPECT_FALSE (config.file ("log.log").exists()) << "the user's folder is not its own";

    EXPECT_EQ (runProgram (temporary, bank).exitCode, 2);
    EXPECT_EQ (runProgram (temporary, bank + "/proc/bank").exitCode, 1);
}
} // namespace
