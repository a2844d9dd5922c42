#include "AudioFile.h"
#include "Commands.h"
#include "Failure.h"
#include "Measurement.h"
#include "PluginSettings.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <optional>
#include <utility>

namespace
{
struct Job
{
    juce::File input, output;
};

struct Settings
{
    int blockSize = 512;
    std::optional<SampleFormat> format;
    bool mayReplace = false;
};

Settings settingsFrom (const Arguments& arguments)
{
    Settings settings;
    settings.blockSize = arguments.integerOf ("--block", settings.blockSize, 1, 65536);
    settings.mayReplace = arguments.has ("--force");

    if (arguments.valueOf ("--rate", "keep") != "keep")
        throw Failure ("--rate can only be \"keep\": a file's own rate is used", Failure::wrongUsage);

    if (arguments.has ("--bits"))
    {
        static const juce::StringArray names { "16", "24", "32", "float" };
        const auto index = names.indexOf (arguments.valueOf ("--bits", {}));

        if (index < 0)
            throw Failure ("--bits is one of " + names.joinIntoString (", "), Failure::wrongUsage);

        settings.format = static_cast<SampleFormat> (index);
    }

    return settings;
}

bool areSameFile (const juce::File& a, const juce::File& b)
{
    std::error_code notComparable;
    return a == b
           || std::filesystem::equivalent (a.getFullPathName().toStdString(),
                                           b.getFullPathName().toStdString(), notComparable);
}

/** Names every output before anything is read or written. */
std::vector<Job> planJobs (const juce::StringArray& operands)
{
    if (operands.size() < 2)
        throw Failure ("render takes an input and an output", Failure::wrongUsage);

    const auto last = fileFromOperand (operands[operands.size() - 1]);
    const auto intoFolder = operands.size() > 2 || last.isDirectory();
    std::vector<Job> jobs;

    for (auto i = 0; i < operands.size() - 1; ++i)
    {
        const auto input = fileFromOperand (operands[i]);
        jobs.push_back ({ input, intoFolder ? last.getChildFile (input.getFileName()) : last });
    }

    return jobs;
}

void checkJob (const Job& job, const std::vector<Job>& all, bool mayReplace)
{
    const auto path = job.output.getFullPathName();

    if (job.output.isDirectory())
        throw Failure (path + ": is a folder");

    if (std::count_if (all.begin(), all.end(), [&] (const auto& other) { return other.output == job.output; })
        > 1)
        throw Failure (path + ": two inputs of this name would be written to it");

    if (std::any_of (all.begin(), all.end(),
                     [&] (const auto& other) { return areSameFile (other.input, job.output); }))
        throw Failure (path + ": is an input; it cannot be the output as well");

    if (job.output.exists() && ! mayReplace)
        throw Failure (path + ": exists already; --force replaces it");
}

AudioShape outputShape (const AudioFileReader& input, const Settings& settings)
{
    auto shape = input.getShape();
    shape.format = settings.format.value_or (shape.format);
    return shape;
}

/** Throws while nothing is written yet. The output folder is made if it is all that is missing. */
void checkJobs (const std::vector<Job>& jobs, const Settings& settings)
{
    for (const auto& job : jobs)
    {
        checkThatFits (job.output, outputShape (AudioFileReader (job.input), settings));
        checkJob (job, jobs, settings.mayReplace);
    }

    const auto folder = jobs.front().output.getParentDirectory();

    if (jobs.size() > 1 && ! folder.exists())
        if (const auto created = folder.createDirectory(); created.failed())
            throw Failure (folder.getFullPathName() + ": cannot be made: " + created.getErrorMessage());

    if (! folder.isDirectory())
        throw Failure (folder.getFullPathName() + ": no such folder");
}

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

volatile std::sig_atomic_t interrupted = 0;

/** Ends the rendering in an orderly way on Ctrl-C, so that no unfinished file stays. */
void watchForInterruption()
{
    for (const auto number : { SIGINT, SIGTERM })
        std::signal (number, [] (int) { interrupted = 1; });
}

/** In samples. Bypassed, the module passes the audio at once, whatever latency it reports. */
int getDelay (PluginHost& host)
{
    return host.getParameter ("enable").getValue() > 0.5f ? host.getLatency() : 0;
}

void printHeader()
{
    std::cout
        << "file                     rate  layout       oversampling  latency  peak in  peak out   LUFS in  "
           "LUFS out  x real time\n";
}

void printResult (PluginHost& host, const Job& job, const AudioShape& shape, const Measurement& in,
                  const Measurement& out, double seconds)
{
    const auto speed = static_cast<double> (shape.frames) / shape.sampleRate / juce::jmax (seconds, 1.0e-9);

    std::cout << job.output.getFileName().paddedRight (' ', 22) << ' '
              << juce::String (juce::roundToInt (shape.sampleRate)).paddedLeft (' ', 6) << "  "
              << host.getParameter ("layout").getText().paddedRight (' ', 13)
              << host.getParameter ("oversampling").getText().paddedRight (' ', 12)
              << juce::String (getDelay (host)).paddedLeft (' ', 9) << in.getPeakText().paddedLeft (' ', 9)
              << out.getPeakText().paddedLeft (' ', 10) << in.getLoudnessText().paddedLeft (' ', 10)
              << out.getLoudnessText().paddedLeft (' ', 10) << juce::String (speed, 1).paddedLeft (' ', 13)
              << std::endl;
}

void render (PluginHost& host, const Job& job, const Settings& settings)
{
    AudioFileReader reader (job.input);
    const auto shape = outputShape (reader, settings);
    AudioFileWriter writer (job.output, shape);

    host.setChannels (shape.channels);
    host.prepare (shape.sampleRate, settings.blockSize);

    // The output of the first `latency` frames belongs before the file's start, so it is dropped, and as many
    // frames of silence bring the file's end out.
    const auto latency = getDelay (host);
    Measurement in (shape.sampleRate, shape.channels, settings.blockSize);
    Measurement out (shape.sampleRate, shape.channels, settings.blockSize);
    Progress progress (shape, job.input.getFileName());
    juce::AudioBuffer<float> block (shape.channels, settings.blockSize), aligned (block);
    auto ticks = juce::int64 {};

    for (juce::int64 position = 0; position < shape.frames + latency; position += settings.blockSize)
    {
        if (interrupted != 0)
            throw Failure ("interrupted; " + job.output.getFullPathName() + " is not written");

        const auto length = static_cast<int> (
            juce::jmin<juce::int64> (settings.blockSize, shape.frames + latency - position));

        block.setSize (shape.channels, length, false, false, true);
        reader.read (block, position);
        in.add (block, static_cast<int> (juce::jlimit<juce::int64> (0, length, shape.frames - position)));

        const auto start = juce::Time::getHighResolutionTicks();
        host.process (block);
        ticks += juce::Time::getHighResolutionTicks() - start;

        const auto skipped = static_cast<int> (juce::jlimit<juce::int64> (0, length, latency - position));
        for (auto channel = 0; channel < shape.channels; ++channel)
            aligned.copyFrom (channel, 0, block, channel, skipped, length - skipped);

        out.add (aligned, length - skipped);
        writer.write (aligned, length - skipped);
        progress.update (position + length - latency);
    }

    writer.finish (settings.mayReplace);
    printResult (host, job, shape, in, out, juce::Time::highResolutionTicksToSeconds (ticks));
}

void runRender (const Arguments& arguments)
{
    const auto settings = settingsFrom (arguments);
    const auto jobs = planJobs (arguments.operands);
    PluginHost host (findModule (arguments.valueOf ("--plugin", {})));

    applySettings (host, arguments);
    checkJobs (jobs, settings);
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
        "WAV, AIFF, RF64, W64 and FLAC are read; OUT is what its name ends in: .wav, .aif, .aiff, .aifc, "
        ".rf64,\n"
        ".w64 or .flac. RF64 and W64 may be larger than 2 GB. FLAC holds 16 or 24 bits.\n"
        "The output lines up with the input and has its length. With several inputs, or if it is a folder\n"
        "already, OUT is the folder for files of the same names.",
        { presetOption,
          stateOption,
          setOption,
          { "--bits", "16|24|32|float", "the output's samples (else as in the input)" },
          { "--rate", "keep", "the output's rate: the input's" },
          { "--block", "N", "frames per block, 1 to 65536 (else 512)" },
          { "--force", nullptr, "replaces existing outputs" },
          pluginOption },
        runRender
    };
}
