#include "AudioFile.h"
#include "Commands.h"
#include "Failure.h"
#include "Loudness.h"
#include "Measurement.h"
#include "PluginSettings.h"
#include "RenderJobs.h"
#include "RenderPass.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <optional>
#include <utility>

namespace
{
/** Says how far a long file is, on stderr: in place on a terminal, else one line for each quarter. */
class Progress
{
public:
    Progress (const AudioShape& shape, juce::String fileName)
        : name (std::move (fileName)),
          total (static_cast<double> (shape.frames)),
          isLong (static_cast<double> (shape.frames) > 60.0 * shape.sampleRate),
          isTerminal (isatty (2) == 1),
          next (isTerminal ? 0 : 25)
    {
    }

    void update (juce::int64 done)
    {
        if (! isLong)
            return;

        const auto percent = juce::jmin (100, static_cast<int> (100.0 * static_cast<double> (done) / total));

        if (percent < next)
            return;

        std::cerr << (isTerminal ? "\r" : "") << name << ": " << percent << " %"
                  << (isTerminal && percent < 100 ? "" : "\n") << std::flush;
        next = percent + (isTerminal ? 1 : 25);
    }

private:
    juce::String name;
    double total;
    bool isLong, isTerminal;
    int next;
};

void printHeader()
{
    std::cout
        << "file                     rate  layout       oversampling  latency  peak in  peak out   LUFS in  "
           "LUFS out   R 128   range   short    dBTP  x real time\n";
}

void printResult (PluginHost& host, const RenderJob& job, const AudioShape& shape, const Measurement& in,
                  const Measurement& out, const Loudness& judge, double seconds)
{
    const auto speed = static_cast<double> (shape.frames) / shape.sampleRate / juce::jmax (seconds, 1.0e-9);

    std::cout << job.output.getFileName().paddedRight (' ', 22) << ' '
              << juce::String (juce::roundToInt (shape.sampleRate)).paddedLeft (' ', 6) << "  "
              << host.getParameter ("layout").getText().paddedRight (' ', 13)
              << host.getParameter ("oversampling").getText().paddedRight (' ', 12)
              << juce::String (delayOf (host)).paddedLeft (' ', 9) << in.getPeakText().paddedLeft (' ', 9)
              << out.getPeakText().paddedLeft (' ', 10) << in.getLoudnessText().paddedLeft (' ', 10)
              << out.getLoudnessText().paddedLeft (' ', 10);

    for (const auto value :
         { judge.getIntegrated(), judge.getRange(), judge.getMaximumShortTerm(), judge.getTruePeak() })
        std::cout << levelText (value).paddedLeft (' ', 8);

    std::cout << juce::String (speed, 1).paddedLeft (' ', 13) << std::endl;
}

void render (PluginHost& host, const RenderJob& job, const OutputSettings& settings)
{
    AudioFileReader reader (job.input);
    const auto shape = outputShape (reader.getShape(), settings);
    AudioFileWriter writer (job.output, shape);
    writer.copyMetadata (reader);

    host.setChannels (shape.channels);
    host.prepare (shape.sampleRate, settings.blockSize);

    Measurement in (shape.sampleRate, shape.channels, settings.blockSize);
    Measurement out (shape.sampleRate, shape.channels, settings.blockSize);
    Loudness judge (shape.sampleRate, shape.channels);
    Progress progress (shape, job.input.getFileName());

    const auto hearOutput = [&] (const juce::AudioBuffer<float>& block, int frames)
    {
        out.add (block, frames);
        judge.add (block, frames);
        writer.write (block, frames);
    };

    const auto seconds = renderThrough (host, reader, settings.blockSize,
                                        { [&] (const auto& block, int frames) { in.add (block, frames); },
                                          hearOutput, [&] (juce::int64 done) { progress.update (done); } });

    writer.finish (settings.mayReplace);
    printResult (host, job, shape, in, out, judge, seconds);
}

void runRender (const Arguments& arguments)
{
    const auto settings = outputSettingsFrom (arguments);

    if (arguments.valueOf ("--rate", "keep") != "keep")
        throw Failure ("--rate can only be \"keep\": a file's own rate is used", Failure::wrongUsage);

    const auto jobs = planJobs (arguments.operands);
    PluginHost host (findModule (arguments.valueOf ("--plugin", {})));

    applySettings (host, arguments);
    for (const auto& job : jobs)
        checkJob (job, jobs, settings);
    provideFolder (jobs);
    host.getInstance().setNonRealtime (true);

    watchForInterruption();
    printHeader();
    for (const auto& job : jobs)
        render (host, job, settings);
}
} // namespace

Command renderCommand()
{
    return {
        "render",
        "IN [IN...] OUT",
        "processes files of audio, mono or stereo, and prints what it did to each\n"
        "WAV, AIFF, RF64, W64, CAF and FLAC are read; OUT is what its name ends in: .wav, .aif, .aiff,\n"
        ".aifc, .rf64, .w64, .caf or .flac. RF64 and W64 may be larger than 2 GB. FLAC holds 16 or 24 bits.\n"
        "Title, artist and the like, cue points and the chunks of broadcast files, with the ISRC in their\n"
        "XML, go along where OUT has room; an ISRC among the tags of a FLAC file does not.\n"
        "The output lines up with the input and has its length. With several inputs, or if it is a folder\n"
        "already, OUT is the folder for files of the same names.",
        { presetOption,
          stateOption,
          setOption,
          bitsOption,
          ditherOption,
          { "--rate", "keep", "the output's rate: the input's" },
          blockOption,
          forceOption,
          pluginOption },
        runRender
    };
}
