// The loudness of what "master" writes is found by the reference here, which shares nothing with its judge.

#include "AudioFile.h"
#include "CommandsUnderTest.h"
#include "GainSearch.h"

#include <array>
#include <cmath>
#include <cstring>

namespace
{
TEST (GainSearch, FindsTheLeastInputGainAndTakesTheRestAway)
{
    struct Row
    {
        double quiet, loudest, target;
        int leastMakeup;
        GainSetting expected;
        bool isReached;
    };

    // A signal of loudness `quiet`, which approaches `loudest` when it is driven.
    const auto loudnessOf = [] (const Row& row, GainSetting gains)
    {
        const auto drive = std::pow (10.0, (row.quiet - row.loudest + gains.input) / 10.0);
        return row.loudest + 10.0 * std::log10 (drive / (1.0 + drive)) + gains.makeupTenths / 10.0;
    };

    const Row rows[] {
        { -23.0, 60.0, -14.0, -180, { 9, 0 }, true },   { -23.4, 60.0, -14.0, -180, { 10, -6 }, true },
        { -23.4, 60.0, -14.0, 0, { 9, 0 }, false },     { -10.0, 60.0, -30.0, -180, { -18, -20 }, true },
        { -40.0, 60.0, -14.0, -180, { 18, 0 }, false }, { -5.0, 60.0, -45.0, -180, { -18, -180 }, false }
    };

    for (const auto& row : rows)
    {
        auto asked = 0;
        const auto found = findGain (row.target, 0.05, { -18, 18, row.leastMakeup },
                                     [&] (GainSetting gains)
                                     {
                                         ++asked;
                                         return loudnessOf (row, gains);
                                     });
        EXPECT_EQ (found.setting.input, row.expected.input) << row.quiet;
        EXPECT_EQ (found.setting.makeupTenths, row.expected.makeupTenths) << row.quiet;
        EXPECT_EQ (found.isReached, row.isReached) << row.quiet;
        EXPECT_DOUBLE_EQ (found.loudness, loudnessOf (row, found.setting));
        EXPECT_LE (asked, 9) << row.quiet;
    }

    // Whatever the signal does, the target is met where a gain meets it, and silence ends the search.
    for (auto quiet = -40.0; quiet < -6.0; quiet += 0.7)
        for (auto loudest = -12.0; loudest < -4.0; loudest += 0.9)
        {
            const Row row { quiet, loudest, -14.0, -180, {}, true };
            auto asked = 0;
            const auto found = findGain (-14.0, 0.05, { -18, 18, -180 },
                                         [&] (GainSetting gains)
                                         {
                                             ++asked;
                                             return loudnessOf (row, gains);
                                         });
            EXPECT_EQ (found.isReached, loudnessOf (row, { 18, 0 }) >= -14.05) << quiet << ' ' << loudest;
            EXPECT_LE (asked, 14);
        }

    const auto silence = findGain (-14.0, 0.05, {}, [] (GainSetting) { return -HUGE_VAL; });
    EXPECT_FALSE (silence.isReached);
}

/** Integrated, after ITU-R BS.1770-4: its filters for 48 kHz, blocks of 400 ms every 100 ms, both gates. */
double loudnessOf (const std::vector<juce::AudioBuffer<float>>& programme)
{
    std::vector<double> blocks;

    for (const auto& audio : programme)
    {
        std::vector<double> power (static_cast<size_t> (audio.getNumSamples() / 4800), 0.0);

        for (auto channel = 0; channel < audio.getNumChannels(); ++channel)
        {
            std::array<double, 4> x {}, y {};
            for (auto i = 0; i < audio.getNumSamples() / 4800 * 4800; ++i)
            {
                const auto in = static_cast<double> (audio.getSample (channel, i));
                const auto mid = 1.53512485958697 * in - 2.69169618940638 * x[0] + 1.19839281085285 * x[1]
                                 + 1.69065929318241 * x[2] - 0.73248077421585 * x[3];
                const auto out = mid - 2.0 * x[2] + x[3] + 1.99004745483398 * y[0] - 0.99007225036621 * y[1];
                x = { in, x[0], mid, x[2] };
                y = { out, y[0] };
                power[static_cast<size_t> (i / 4800)] += out * out / 4800.0;
            }
        }

        for (size_t i = 3; i < power.size(); ++i)
            blocks.push_back ((power[i] + power[i - 1] + power[i - 2] + power[i - 3]) / 4.0);
    }

    const auto level = [] (double meanSquare) { return 10.0 * std::log10 (meanSquare) - 0.691; };
    const auto meanAbove = [&] (double gate)
    {
        auto sum = 0.0, count = 0.0;
        for (const auto block : blocks)
            if (level (block) > gate)
                sum += block, count += 1.0;

        return level (sum / count);
    };
    return meanAbove (meanAbove (-70.0) - 10.0);
}

class Master : public Commands
{
protected:
    /** Noise in bursts, so that the gates have something to do. */
    void writeProgramme (const juce::String& name, float level, int seconds = 8, int channels = 2)
    {
        auto audio = smoothNoise (channels, seconds * 48000, level);
        for (auto from = 0; from < audio.getNumSamples(); from += 48000)
            audio.applyGain (from, 24000, from % 96000 == 0 ? 0.3f : 0.02f);

        writeWav (temporary.file (name), audio, 48000.0, 24);
    }

    [[nodiscard]] juce::AudioBuffer<float> audioOf (const juce::String& name) const
    {
        return readAudio (temporary.file (name)).audio;
    }

    [[nodiscard]] juce::var json (const juce::String& words) const
    {
        const auto result = run ("master " + words + " --json");
        EXPECT_EQ (result.exitCode, 0) << result.errors;
        return juce::JSON::parse (result.output)["files"];
    }
};

TEST_F (Master, BringsAFileToTheLoudnessThatAnIndependentMeterReads)
{
    writeProgramme ("quiet.wav", 0.2f);
    writeProgramme ("loud.wav", 0.9f, 5, 1);

    for (const auto target : { -14.0, -9.3 })
    {
        const auto result = json (
            "quiet.wav loud.wav out --force --preset 'Gentle Master' --set link_post=Unlinked --loudness "
            + juce::String (target, 1));

        for (const juce::String name : { "quiet.wav", "loud.wav" })
        {
            EXPECT_EQ (audioOf ("out/" + name).getNumSamples(), audioOf (name).getNumSamples());
            EXPECT_NEAR (loudnessOf ({ audioOf ("out/" + name) }), target, 0.1) << name;
        }

        for (auto i = 0; i < 2; ++i)
        {
            const auto file = result[i];
            EXPECT_NEAR (file["before"]["integrated"], loudnessOf ({ audioOf (file["input"]) }), 0.05);
            EXPECT_TRUE (file["reached"] && file["written"]);
        }
    }

    // The preset's own input gain is not what was used.
    ASSERT_EQ (run ("state save it.state --preset 'Gentle Master' --set in_gain=3").exitCode, 0);
    const auto described =
        run ("master quiet.wav x.wav --dry-run --json --loudness -14 --state it.state").output;
    EXPECT_TRUE (described.contains ("oversampling=") && ! described.contains ("in_gain=")) << described;

    // Out of reach, nothing is written unless asked for.
    for (const juce::String extra : { "", " --nearest --dry-run", " --nearest" })
    {
        const auto result = run ("master quiet.wav far.wav --loudness -1 --set threshold_post=-12" + extra);
        EXPECT_EQ (result.exitCode, 3);
        EXPECT_TRUE (result.errors.contains ("-1.0 LUFS cannot be reached")
                     && result.errors.contains ("with the input gain at its most"))
            << result.errors;
        EXPECT_EQ (temporary.file ("far.wav").existsAsFile(), extra == " --nearest");
    }
}

TEST_F (Master, KeepsAnAlbumsDifferencesAndTellsWhereItsPeaksAre)
{
    writeProgramme ("one.wav", 0.25f);
    writeProgramme ("two.wav", 0.125f, 12);

    // A sine at a quarter of the rate, between whose samples the peak lies: 0.7079 in samples is 0 dBTP.
    juce::AudioBuffer<float> peaks (2, 5 * 48000);
    peaks.clear();
    for (auto i = 150000; i < 153600; ++i)
        for (auto channel = 0; channel < 2; ++channel)
            peaks.setSample (channel, i, (i / 2) % 2 == 0 ? 0.5f : -0.5f);
    writeWav (temporary.file ("peaks.wav"), peaks, 48000.0, 24);

    const auto result =
        json ("one.wav two.wav peaks.wav album --album --peak -6 --loudness -16 --set mode_single=Hard");
    EXPECT_NEAR (
        loudnessOf ({ audioOf ("album/one.wav"), audioOf ("album/two.wav"), audioOf ("album/peaks.wav") }),
        -16.0, 0.1);

    // At these levels nothing clips, so that every sample has the same gain.
    const auto gain =
        audioOf ("album/one.wav").getMagnitude (0, 48000) / audioOf ("one.wav").getMagnitude (0, 48000);
    const auto other =
        audioOf ("album/two.wav").getMagnitude (0, 48000) / audioOf ("two.wav").getMagnitude (0, 48000);
    EXPECT_NEAR (gain, other, 1.0e-4f);

    const auto places = result[2]["overs"];
    ASSERT_EQ (places.size(), 1);
    EXPECT_NEAR (places[0]["seconds"], 150000.0 / 48000.0, 0.011);
    EXPECT_NEAR (places[0]["length"], 3600.0 / 48000.0, 0.021);
    EXPECT_NEAR (places[0]["true_peak"],
                 20.0 * std::log10 (static_cast<double> (0.5f * gain) * std::sqrt (2.0)), 0.3);
}

TEST_F (Master, ABatchOutlivesItsBadFiles)
{
    juce::StringArray names, bad;
    const auto noise = smoothNoise (1, 8000, 0.3f);

    for (auto i = 0; i < 200; ++i)
    {
        const auto name = "f" + juce::String (1000 + i) + ".wav";
        names.add (name);
        writeWav (temporary.file (name), noise, 8000.0, 16);
        if (i % 20 != 7)
            continue;

        bad.add (name);
        const auto file = temporary.file (name);
        switch (i / 20)
        {
            case 0: file.deleteFile(); break;
            case 1: file.replaceWithText (""); break;
            case 2: file.replaceWithText ("no audio at all"); break;
            case 3: writeWav (file, smoothNoise (3, 8000, 0.3f), 8000.0, 16); break;
            case 4: writeWav (file, noise, 7999.0, 16); break;
            case 5: writeWav (file, noise, 800000.0, 16); break;
            case 6: file.deleteFile(), file.createDirectory(); break;
            case 7: temporary.file ("out").createDirectory(), temporary.file ("out/" + name).create(); break;
            case 8: temporary.file ("out/" + name).createDirectory(); break;
            default:
                juce::MemoryBlock whole;
                file.loadFileAsData (whole);
                file.replaceWithData (whole.getData(), whole.getSize() - 400);
        }
    }

    const auto result =
        run ("master " + names.joinIntoString (" ") + " out --loudness -20 --jobs 3 --report page.html");
    EXPECT_EQ (result.exitCode, 1);

    const auto errors = linesOf (result.errors);
    ASSERT_EQ (errors.size(), 11) << result.errors;
    for (auto i = 0; i < 10; ++i)
        EXPECT_TRUE (errors[i].contains (bad[i] + ": ")) << errors[i];
    EXPECT_EQ (errors[10], "orvo-host: 10 of 200 files failed");

    auto rows = linesOf (result.output);
    rows.remove (0);
    for (const auto& name : bad)
        names.removeString (name);
    ASSERT_EQ (rows.size(), 190);
    const auto page = temporary.file ("page.html").loadFileAsString();

    for (auto i = 0; i < 190; ++i)
    {
        EXPECT_TRUE (rows[i].startsWith (names[i] + " ")) << "in the order of the command line";
        EXPECT_TRUE (temporary.file ("out/" + names[i]).existsAsFile());
        EXPECT_TRUE (page.contains ("<h2>" + names[i] + "</h2>"));
    }

    EXPECT_EQ (temporary.file ("out").getNumberOfChildFiles (juce::File::findFiles), 191);
    EXPECT_FALSE (page.contains ("http") || page.contains ("src="));
}

TEST_F (Master, AnInterruptionLeavesNoHalfFile)
{
    writeProgramme ("long.wav", 0.3f, 120);
    temporary.file ("batch").replaceWithText (
        "set -m\n" ORVO_HOST " render long.wav out.w64 --set oversampling=16x &\n"
        "until ls -A | grep -q part; do :; done\nkill -INT $!\nwait $!\n",
        false, false, "\n");
    const auto result = runProgram (temporary, "bash batch");
    EXPECT_EQ (result.exitCode, 1);
    EXPECT_TRUE (result.errors.contains ("interrupted")) << result.errors;
    EXPECT_EQ (temporary.folder.getNumberOfChildFiles (juce::File::findFiles, "*"), 2);
}

TEST_F (Commands, MetadataGoesAlongWhereTheFormatHasRoom)
{
    const auto open = [&] (const juce::String& name, int mode, SF_INFO& info)
    { return SoundPointer (sf_open (temporary.file (name).getFullPathName().toRawUTF8(), mode, &info)); };
    const std::string isrc = "<ISRC>QZTES2600001</ISRC>";
    {
        SF_INFO info { 0, 48000, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_24, 0, 0 };
        const auto file = open ("in.wav", SFM_WRITE, info);
        sf_set_string (file.get(), SF_STR_TITLE, "A title");
        sf_set_string (file.get(), SF_STR_ARTIST, "An artist");
        SF_BROADCAST_INFO broadcast {};
        std::strcpy (broadcast.originator, "somebody");
        broadcast.time_reference_low = 4711;
        sf_command (file.get(), SFC_SET_BROADCAST_INFO, &broadcast, sizeof (broadcast));
        SF_CHUNK_INFO chunk { "axml", 4, static_cast<unsigned int> (isrc.size()),
                              const_cast<char*> (isrc.data()) };
        EXPECT_EQ (sf_set_chunk (file.get(), &chunk), SF_ERR_NO_ERROR);
        const std::vector<float> silence (4800);
        sf_write_float (file.get(), silence.data(), 4800);
    }

    for (const juce::String ending : { "wav", "rf64", "aiff", "caf", "flac" })
    {
        EXPECT_EQ (run ("render in.wav out." + ending).errors, "");
        SF_INFO info {};
        const auto file = open ("out." + ending, SFM_READ, info);
        ASSERT_NE (file, nullptr) << ending;
        EXPECT_STREQ (sf_get_string (file.get(), SF_STR_TITLE), "A title") << ending;
        EXPECT_STREQ (sf_get_string (file.get(), SF_STR_ARTIST), "An artist") << ending;

        if (ending != "wav" && ending != "rf64")
            continue;

        SF_BROADCAST_INFO broadcast {};
        EXPECT_EQ (sf_command (file.get(), SFC_GET_BROADCAST_INFO, &broadcast, sizeof (broadcast)), SF_TRUE)
            << ending;
        EXPECT_EQ (broadcast.time_reference_low, 4711u);
        if (ending == "wav")
        {
            juce::MemoryBlock bytes;
            temporary.file ("out.wav").loadFileAsData (bytes);
            EXPECT_NE ((std::string_view { bytes.begin(), bytes.getSize() }).find (isrc),
                       std::string_view::npos);
        }
    }
}

TEST_F (Commands, DitherIsTriangularAndTheSameForEachFile)
{
    // Bypassed. Rounded, a third of a step is lost; with TPDF dither it is the mean, and the error's power is a quarter
    // of a step squared, whatever the signal (Lipshitz, Wannamaker and Vanderkooy, JAES 40 (1992)).
    juce::AudioBuffer<float> third (1, 48000);
    juce::FloatVectorOperations::fill (third.getWritePointer (0), 1.0f / 3.0f / 32768.0f, 48000);
    writeWav (temporary.file ("in.wav"), third, 48000.0, 32);
    const auto stored = [&] (const juce::String& name, const juce::String& options)
    {
        EXPECT_EQ (run ("render in.wav " + name + " --bits 16 --set enable=Bypassed" + options).errors, "");
        return readAudio (temporary.file (name)).stored;
    };

    const auto plain = stored ("plain.wav", ""), dithered = stored ("one.wav", " --dither");
    EXPECT_EQ (plain, std::vector<int> (48000));
    EXPECT_EQ (dithered, stored ("two.wav", " --dither"));

    auto mean = 0.0, power = 0.0;
    for (const auto sample : dithered)
    {
        const auto error = sample / 65536.0 - 1.0 / 3.0;
        mean += error / 48000.0;
        power += error * error / 48000.0;
    }
    EXPECT_NEAR (mean, 0.0, 0.01);
    EXPECT_NEAR (power, 0.25, 0.01);
}
} // namespace
