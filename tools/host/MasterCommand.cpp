#include "Commands.h"
#include "Failure.h"
#include "MasterBatch.h"
#include "MasterReport.h"
#include "PluginSettings.h"
#include "RenderPass.h"

#include <unistd.h>

#include <iostream>
#include <thread>

namespace
{
constexpr Option loudnessOption { "--loudness", "LUFS", "the integrated loudness to reach, -60 to 0" };
constexpr Option peakOption { "--peak", "dBTP", "tells the places with true peaks above, -20 to 6" };
constexpr Option albumOption { "--album", nullptr,
                               "the same gains for all files, so that the album has that loudness" };
constexpr Option nearestOption { "--nearest", nullptr,
                                 "writes what comes nearest where the target is missed" };
constexpr Option dryOption { "--dry-run", nullptr, "finds the gains and writes no audio" };
constexpr Option jobsOption { "--jobs", "N", "files at once, 1 to 64 (else one for each core)" };
constexpr Option reportOption { "--report", "FILE.html", "a page on the batch, with waveforms and loudness" };
constexpr Option jsonOption { "--json", nullptr, "prints the figures as JSON" };

/** A parameter that is a switch or number, as the settings leave it. */
bool isOn (PluginHost& host, const char* id)
{
    return host.getParameter (id).getValue() > 0.5f;
}

bool isSetByUser (const Arguments& arguments, const juce::String& id)
{
    for (const auto& setting : arguments.valuesOf (setOption.name))
        if (setting.upToFirstOccurrenceOf ("=", false, false).trim() == id)
            return true;

    return false;
}

MasterOrder orderFrom (const Arguments& arguments, PluginHost& host)
{
    MasterOrder order;
    order.target = arguments.numberOf (loudnessOption.name, 0.0, -60.0, 0.0);
    order.peakLimit =
        arguments.numberOf (peakOption.name, std::numeric_limits<double>::infinity(), -20.0, 6.0);
    order.isAlbum = arguments.has (albumOption.name);
    order.makeup = host.getParameter ("gain_post").getText().getDoubleValue();
    order.makeupIsFree =
        isOn (host, "enable_post") && ! isOn (host, "link_post") && ! isSetByUser (arguments, "gain_post");
    order.version = host.getInstance().getPluginDescription().version;
    order.settings = settingsApartFromDefaults (host);

    // What is found for each file stands there.
    for (auto i = order.settings.size(); --i >= 0;)
        if (order.settings[i].startsWith ("in_gain=")
            || (order.makeupIsFree && order.settings[i].startsWith ("gain_post=")))
            order.settings.remove (i);

    return order;
}

void checkArguments (const Arguments& arguments)
{
    if (! arguments.has (loudnessOption.name))
        throw Failure ("master needs a loudness to reach: --loudness -9", Failure::wrongUsage);

    if (isSetByUser (arguments, "in_gain"))
        throw Failure ("in_gain is what master finds; it cannot be set", Failure::wrongUsage);
}

/** Says on a terminal how far the batch is and how long it may take. */
class BatchProgress
{
public:
    void update (double part)
    {
        const auto seconds = (juce::Time::getMillisecondCounterHiRes() - start) / 1000.0;
        if (! isTerminal || part <= 0.0 || seconds < 1.0)
            return;

        const auto left = juce::RelativeTime (seconds * (1.0 - part) / part);
        std::cerr << "\r\033[K" << juce::roundToInt (100.0 * part) << " %, "
                  << (part < 1.0 ? left.getDescription() + " left" : juce::String()) << std::flush;
        isShown = true;
    }

    /** Before anything else is printed. */
    void clear()
    {
        if (isShown)
            std::cerr << "\r\033[K" << std::flush;
        isShown = false;
    }

private:
    const bool isTerminal = isatty (2) == 1;
    const double start = juce::Time::getMillisecondCounterHiRes();
    bool isShown = false;
};

void printHeader()
{
    std::cout
        << "file                      in gain  makeup   LUFS in  LUFS out   range   short    dBTP  meter\n";
}

/** The first of them; they may be thousands, and a report or JSON has room for all. */
void printOvers (const std::vector<Loudness::Over>& overs)
{
    constexpr size_t most = 20;

    for (size_t i = 0; i < juce::jmin (most, overs.size()); ++i)
        std::cout << "  " << levelText (overs[i].level, 2) << " dBTP at "
                  << juce::String (overs[i].seconds, 2) << " s, for "
                  << juce::roundToInt (1000.0 * overs[i].length) << " ms\n";

    if (overs.size() > most)
        std::cout << "  and at " << overs.size() - most << " places more, which --report and --json name\n";
}

void printRow (const MasterOrder& order, const MasterResult& result)
{
    const auto path = result.job.input.getFullPathName();

    if (result.error.isNotEmpty())
    {
        std::cout.flush();
        if (! isInterrupted())
            std::cerr << "orvo-host: " << result.error << std::endl;
        return;
    }

    std::cout << result.job.input.getFileName().paddedRight (' ', 24) << ' '
              << juce::String (result.gains.input).paddedLeft (' ', 8)
              << juce::String (result.makeup, 1).paddedLeft (' ', 8);
    for (const auto value : { result.before.integrated, result.after.integrated })
        std::cout << levelText (value).paddedLeft (' ', 10);
    for (const auto value : { result.after.range, result.after.shortTerm, result.after.truePeak })
        std::cout << levelText (value).paddedLeft (' ', 8);
    std::cout << result.after.meter.paddedLeft (' ', 7) << '\n';

    printOvers (result.overs);

    std::cout.flush();
    if (! result.isReached)
        std::cerr << "orvo-host: " << path << ": " << levelText (order.target)
                  << " LUFS cannot be reached: " << order.whyMissed (result)
                  << (result.isWritten ? "" : "; nothing is written") << std::endl;
}

/** Ends the command as the files went. Each was told of already. */
void judge (const std::vector<MasterResult>& results)
{
    const auto failed = std::count_if (results.begin(), results.end(),
                                       [] (const auto& result) { return result.error.isNotEmpty(); });
    const auto missed =
        std::count_if (results.begin(), results.end(), [] (const auto& result) { return ! result.isReached; })
        - failed;
    const auto ofAll = " of " + juce::String (results.size()) + " files";

    if (isInterrupted())
        throw Failure ("interrupted; " + juce::String (static_cast<int> (failed)) + ofAll
                           + " are not written",
                       Failure::interrupted);

    if (failed > 0)
        throw Failure (results.size() > 1 ? juce::String (static_cast<int> (failed)) + ofAll + " failed"
                                          : juce::String());

    if (missed > 0)
        throw Failure ({}, Failure::targetMissed);
}

void runMaster (const Arguments& arguments)
{
    checkArguments (arguments);
    const auto jobs = planJobs (arguments.operands);
    const auto module = findModule (arguments.valueOf ("--plugin", {}));

    const auto makeHost = [&]
    {
        auto host = std::make_unique<PluginHost> (module);
        applySettings (*host, arguments);
        host->getInstance().setNonRealtime (true);
        return host;
    };

    const auto first = makeHost();
    const MasterBatch::Options options { orderFrom (arguments, *first), outputSettingsFrom (arguments),
                                         arguments.has (nearestOption.name), arguments.has (dryOption.name) };
    const auto report = reportFileFrom (arguments.valueOf (reportOption.name, {}), options.output.mayReplace);

    if (! options.isDry)
        provideFolder (jobs);

    const auto cores = juce::jlimit (1, 64, static_cast<int> (std::thread::hardware_concurrency()));
    RenderPool pool (
        juce::jmin (arguments.integerOf (jobsOption.name, cores, 1, 64), static_cast<int> (jobs.size())),
        makeHost);
    MasterBatch batch (pool, options, jobs);
    BatchProgress progress;
    const auto printsTable = ! arguments.has (jsonOption.name);

    watchForInterruption();
    if (printsTable)
        printHeader();

    batch.run (
        [&] (const MasterResult& result)
        {
            progress.clear();
            if (printsTable || result.error.isNotEmpty())
                printRow (options.order, result);
        },
        [&] (double part) { progress.update (part); });
    progress.clear();

    if (! printsTable)
        std::cout << asJson (options.order, batch.getResults()) << '\n';
    if (report != juce::File() && ! isInterrupted())
        writeReport (report, options.order, batch.getResults(), options.output.mayReplace);

    judge (batch.getResults());
}
} // namespace

Command masterCommand()
{
    return { "master",
             "IN [IN...] OUT",
             "brings files of audio to a loudness, with the gains that this takes\n"
             "The input gain, in whole decibels, and the makeup of Post behind it are found by rendering, so "
             "that the\n"
             "output has the loudness. What cannot be reached is told, and not written. Files are read and "
             "written\n"
             "as by \"render\"; a file that fails stops no other. Loudness and peaks are after EBU R 128.",
             { loudnessOption, peakOption, albumOption, nearestOption, dryOption, presetOption, stateOption,
               setOption, bitsOption, ditherOption, blockOption, jobsOption, reportOption, jsonOption,
               forceOption, pluginOption },
             runMaster };
}
