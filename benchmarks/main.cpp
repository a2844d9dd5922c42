// orvo-bench: what each part of the audio engine costs. The options of Google Benchmark apply, as in
// --benchmark_filter=section; --benchmark_out=FILE writes the table as JSON. --ratios, or --ratios=PART for rows
// whose name contains PART, compares the kernels with their plain forms instead. --costs
// prints what scripts/plot_costs.py makes tables and a picture of.

#include "Frames.h"
#include "Ratios.h"
#include "Rows.h"
#include "scratch/TemporaryFolder.h"

#include <juce_events/juce_events.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace
{
/** One line per row with its readings. */
class Table final : public benchmark::ConsoleReporter
{
public:
    bool ReportContext (const Context& context) override
    {
        const auto proceed = ConsoleReporter::ReportContext (context);
        std::printf ("%-32s%12s%12s\n", "row", "ns/sample", "x realtime");
        return proceed;
    }

    void ReportRuns (const std::vector<Run>& runs) override
    {
        for (const auto& run : runs)
        {
            if (const auto frame = run.counters.find (bench::msPerFrame); frame != run.counters.end())
            {
                std::printf ("%-32s%12.3f ms per frame\n", run.benchmark_name().c_str(), frame->second.value);
                continue;
            }

            std::printf ("%-32s%12.2f%12.1f\n", run.benchmark_name().c_str(),
                         run.counters.at (bench::nsPerSample).value,
                         run.counters.at (bench::timesRealTime).value);
        }

        std::fflush (stdout);
    }
};
} // namespace

int main (int argc, char** argv)
{
    forbidDisplay();
    const TemporaryHome home;
    const juce::ScopedJuceInitialiser_GUI juce;

    const std::string first (argc > 1 ? argv[1] : "");
    const std::string ratios ("--ratios");

    try
    {
        if (first.starts_with (ratios))
        {
            bench::printRatios (first.substr (std::min (first.size(), ratios.size() + 1)));
            return EXIT_SUCCESS;
        }

        if (first == "--costs")
        {
            bench::printCosts();
            return EXIT_SUCCESS;
        }

        benchmark::Initialize (&argc, argv);

        if (benchmark::ReportUnrecognizedArguments (argc, argv))
            return EXIT_FAILURE;

        bench::addSectionRows();
        bench::addMeterRows();
        bench::addChainRows();
        bench::addGraphRows();
    }
    catch (const std::exception& error)
    {
        std::fprintf (stderr, "orvo-bench: %s\n", error.what());
        return EXIT_FAILURE;
    }

    Table table;
    benchmark::RunSpecifiedBenchmarks (&table);
    benchmark::Shutdown();
}
