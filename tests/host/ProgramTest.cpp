#include "AudioLoop.h"
#include "HostTestSupport.h"
#include "PluginHost.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>

namespace
{
TEST (Program, LinesUpWithTheInputAndKeepsItsLength)
{
    const WorkFolder temporary;
    const auto input = smoothNoise (2, 20001, 0.5f);
    writeWav (temporary.file ("in.wav"), input, 44100.0, 32);

    for (const juce::String factor : { "Off", "2x", "4x", "8x", "16x" })
    {
        // The sections and the ceiling leave a signal below full scale alone.
        const auto run = runHost (
            temporary,
            "render in.wav " + factor
                + ".wav --block 300 --set enable_single=Off --set enable_post=Off --set oversampling="
                + factor);
        ASSERT_EQ (run.exitCode, 0) << run.errors;

        const auto output = readAudio (temporary.file (factor + ".wav"));
        ASSERT_EQ (output.audio.getNumSamples(), input.getNumSamples());
        ASSERT_EQ (output.audio.getNumChannels(), 2);
        EXPECT_EQ (output.sampleRate, 44100.0);

        // Smooth noise differs by more than this from itself a frame later. The last frames too: they come out only
        // because silence is fed behind them.
        for (auto channel = 0; channel < 2; ++channel)
            for (auto i = 0; i < input.getNumSamples(); i += 10)
                ASSERT_NEAR (output.audio.getSample (channel, i), input.getSample (channel, i), 0.02f)
                    << factor << i;
    }
}

TEST (Program, KeepsEveryFormatAndHoldsWhatIsBeyondFullScale)
{
    // Full scale and its neighbours, halves of the last bit, what lies beyond, and what is no number; an odd count.
    const std::vector<float> values { 0.0f,          0.5f,      -0.5f,     1.0f,         -1.0f,
                                      0.99999f,      -0.99999f, 1.5e-5f,   1.0f / 65536, 3.0f / 65536,
                                      -5.0f / 65536, 1.00001f,  -1.00001f, 1.5f,         -1.5f,
                                      2.0f,          -2.0f,     3.0f,      1.0e9f,       -1.0e9f,
                                      3.0e38f,       -3.0e38f,  1.0e-9f,   0.333f,       std::nanf ("") };
    const auto frames = static_cast<int> (values.size());
    const WorkFolder temporary;
    const auto render =
        [&] (const juce::String& from, const juce::String& to, const juce::String& options = {})
    {
        // Bypassed, the audio passes at once, whatever latency is reported.
        const auto run = runHost (temporary, "render " + from + " " + to + options
                                                 + " --force --set enable=Bypassed --set oversampling=16x");
        EXPECT_EQ (run.exitCode, 0) << run.errors;

        const auto file = temporary.file (to);
        const std::map<juce::String, juce::String> magic { { ".wav", "RIFF" },
                                                           { ".aiff", "FORM" },
                                                           { ".rf64", "RF64" },
                                                           { ".w64", "riff" },
                                                           { ".flac", "fLaC" } };
        EXPECT_TRUE (file.loadFileAsString().startsWith (magic.at (file.getFileExtension()))) << to;
        return readAudio (file);
    };
    const auto shapeOf = [] (const AudioFileContents& contents)
    {
        return std::tuple (contents.audio.getNumChannels(), contents.sampleRate, contents.bits,
                           contents.isFloat);
    };

    for (const auto& [channels, rate] : { std::pair { 1, 44100.0 }, { 2, 96000.0 } })
    {
        juce::AudioBuffer<float> audio (channels, frames);
        for (auto i = 0; i < channels * frames; ++i)
            audio.setSample (i / frames, i % frames,
                             values[static_cast<size_t> (i < frames ? i : 2 * frames - 1 - i)]);
        writeWav (temporary.file ("in.wav"), audio, rate, 32);

        for (const juce::String name : { "out.wav", "out.aiff", "out.rf64" })
            for (const auto& [format, bits] :
                 { std::pair { "16", 16 }, { "24", 24 }, { "32", 32 }, { "float", 32 } })
            {
                SCOPED_TRACE (testing::Message() << channels << " channels, " << format << ", " << name);
                const auto isFloat = juce::String (format) == "float";
                const auto written = render ("in.wav", name, juce::String (" --bits ") + format);
                EXPECT_EQ (shapeOf (written), std::tuple (channels, rate, bits, isFloat));
                ASSERT_EQ (written.stored.size(), static_cast<size_t> (channels * frames));

                for (auto i = 0; i < channels * frames; ++i)
                {
                    const auto value = audio.getSample (i / frames, i % frames);
                    const auto fullScale = std::ldexp (1.0, bits - 1);
                    const auto held =
                        std::isnan (value)
                            ? 0.0
                            : std::clamp (std::nearbyint (fullScale * static_cast<double> (value)),
                                          -fullScale, fullScale - 1.0);
                    EXPECT_EQ (written.stored[static_cast<size_t> (i)],
                               isFloat ? std::bit_cast<int> (value)
                                       : static_cast<int> (std::ldexp (held, 32 - bits)))
                        << value;
                }

                // In the input's own format, and in the other containers. JUCE reads two of them by way of WAV.
                for (const juce::String again :
                     { "again.wav", "again.aiff", "again.rf64", "again.w64", "again.flac" })
                {
                    if (again == "again.flac" && bits == 32)
                        continue;

                    auto kept = render (name, again);
                    if (again == "again.w64" || again == "again.flac")
                        kept = render (again, "back.wav");
                    EXPECT_EQ (shapeOf (kept), shapeOf (written));
                    EXPECT_EQ (kept.stored, written.stored) << again;
                }
            }
    }

    writeWav (temporary.file ("eight.wav"), smoothNoise (1, 333, 1.0f), 8000.0, 8);
    const auto widened = render ("eight.wav", "out.wav");
    EXPECT_EQ (widened.bits, 16);
    EXPECT_TRUE (widened.audio == readAudio (temporary.file ("eight.wav")).audio);
}

TEST (Program, PrintsUnderItsTitlesWhatItDidToEachFile)
{
    struct
    {
        const char* name;
        double rate;
        int channels, bits;

        /** Of a tone, in the left of two channels half as loud, and then as much of silence. */
        double peakDb;
        int tenthsInHalf;
    } const clips[] { { "stereo.wav", 48000.0, 2, 24, -12.0, 40 },
                      { "mono.wav", 96000.0, 1, 32, -20.0, 30 },
                      { "long.wav", 44100.0, 2, 16, -33.0, 306 },
                      { "silent.wav", 44100.0, 2, 16, -400.0, 10 },
                      { "empty.wav", 48000.0, 2, 32, -400.0, 0 } };

    const WorkFolder temporary;
    juce::String inputs;

    for (const auto& [name, rate, channels, bits, peakDb, tenths] : clips)
    {
        const auto half = juce::roundToInt (0.1 * tenths * rate);
        juce::AudioBuffer<float> audio (channels, 2 * half);
        audio.clear();
        for (auto i = 0; i < channels * half; ++i)
            audio.setSample (
                i % channels, i / channels,
                static_cast<float> (
                    (i % channels < channels - 1 ? 0.5 : 1.0) * std::pow (10.0, 0.05 * peakDb)
                    * std::sin (juce::MathConstants<double>::twoPi * 1000.0 * (i / channels) / rate)));
        writeWav (temporary.file (name), audio, rate, bits);
        inputs << " " << name;

        if (tenths > 0)
        {
            EXPECT_EQ (AudioLoop::loadClip (temporary.file (name).getFullPathName()).sampleRate, rate)
                << name;
        }
    }

    for (const auto& [layout, factor, gain] :
         { std::tuple { "Left / Right", "4x", 6.0 }, { "Single Band", "Off", -3.0 } })
    {
        const auto options = juce::String (" --force --block 0 --block 512 --set 'layout=") + layout
                             + "' --set oversampling=" + factor + " --set in_gain=" + juce::String (gain);
        const auto start = juce::Time::getMillisecondCounterHiRes();
        const auto run = runHost (temporary, "render" + inputs + " done" + options);
        const auto wallSeconds = 0.001 * (juce::Time::getMillisecondCounterHiRes() - start);
        ASSERT_EQ (run.exitCode, 0) << run.errors;
        EXPECT_EQ (run.errors, "long.wav: 25 %\nlong.wav: 50 %\nlong.wav: 75 %\nlong.wav: 100 %\n");

        PluginHost host (builtModule);
        host.getParameter ("oversampling").setFromText (factor);
        host.prepare (48000.0, 64);

        const auto lines = linesOf (run.output);
        ASSERT_EQ (lines.size(), 6) << run.output;

        for (auto row = 1; row < 6; ++row)
        {
            const auto& clip = clips[row - 1];
            const auto& line = lines[row];
            SCOPED_TRACE (line);
            const auto under = [&] (const char* title) { return line.substring (lines[0].indexOf (title)); };
            const auto cell = [&] (const char* title)
            {
                const auto end = lines[0].indexOf (title) + juce::String (title).length();
                EXPECT_TRUE (end == line.length() || line[end] == ' ') << title;
                return line.substring (0, end).fromLastOccurrenceOf (" ", false, false);
            };

            EXPECT_TRUE (under ("file").startsWith (juce::String (clip.name) + "  "));
            EXPECT_TRUE (under ("layout").startsWith (juce::String (layout) + " "));
            EXPECT_TRUE (under ("oversampling").startsWith (juce::String (factor) + "  "));
            EXPECT_EQ (cell ("rate"), juce::String (juce::roundToInt (clip.rate)));
            EXPECT_EQ (cell ("latency"), juce::String (host.getLatency()));
            EXPECT_GE (cell ("x real time").getDoubleValue(), 0.2 * clip.tenthsInHalf / wallSeconds);

            const auto before = readAudio (temporary.file (clip.name));
            const auto after = readAudio (temporary.file (juce::String ("done/") + clip.name));
            EXPECT_EQ (std::tuple (after.sampleRate, after.bits, after.stored.size()),
                       std::tuple (clip.rate, clip.bits, before.stored.size()));

            if (clip.peakDb < -100.0)
            {
                EXPECT_EQ (cell ("peak in") + cell ("peak out") + cell ("LUFS in") + cell ("LUFS out"),
                           "-inf-inf--");
                continue;
            }

            // Near 1 kHz weighting and offset cancel. At either end of the tone three windows of 0.4 s are partly full,
            // by a quarter at least, which is above the gate: together as much as three full ones.
            const auto loudness = clip.peakDb
                                  + 10.0
                                        * std::log10 (0.5 * (clip.channels > 1 ? 1.25 : 1.0)
                                                      * clip.tenthsInHalf / (clip.tenthsInHalf + 3.0));

            EXPECT_NEAR (cell ("peak in").getDoubleValue(), clip.peakDb, 0.011);
            EXPECT_NEAR (cell ("peak out").getDoubleValue(), clip.peakDb + gain, 0.05);
            EXPECT_NEAR (cell ("LUFS in").getDoubleValue(), loudness, 0.11);
            EXPECT_NEAR (cell ("LUFS out").getDoubleValue(), loudness + gain, 0.11);

            // Its blocks lie in the file: at the tone's end alone three of them are partly full, and together one and a half.
            const auto inFile = 10.0
                                * std::log10 ((1.0 - 1.5 / clip.tenthsInHalf) * (clip.tenthsInHalf + 3.0)
                                              / clip.tenthsInHalf);
            EXPECT_NEAR (cell ("R 128").getDoubleValue(), loudness + gain + inFile, 0.11);
            EXPECT_NEAR (cell ("dBTP").getDoubleValue(), clip.peakDb + gain, 0.1);
        }

        // A file's result does not hang on the files before it. A folder takes a single file, too.
        temporary.file ("alone").createDirectory();
        ASSERT_EQ (runHost (temporary, "render mono.wav alone" + options).exitCode, 0);
        EXPECT_TRUE (readAudio (temporary.file ("alone/mono.wav")).audio
                     == readAudio (temporary.file ("done/mono.wav")).audio);
    }
}
} // namespace
