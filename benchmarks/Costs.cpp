// What the plug-in costs against block size, sample rate and number of instances in one process.

#include "common/Sections.h"
#include "Ratios.h"

#include <array>
#include <cstdio>
#include <memory>

namespace bench
{

namespace
{
constexpr auto numTurns = 9;

struct Setting
{
    int layout, exponent;
};

constexpr std::array settings { Setting { Layout::singleBand, 0 }, Setting { Layout::singleBand, 2 },
                                Setting { Layout::singleBand, 4 }, Setting { Layout::multiBand, 4 } };

void print (const char* kind, const Setting& setting, double place, double cost)
{
    std::printf ("%s,\"%s, %s\",%g,%.2f\n", kind, Layout::names[static_cast<size_t> (setting.layout)],
                 Oversampling::names[static_cast<size_t> (setting.exponent)], place, cost);
    std::fflush (stdout);
}

/** One block through each instance in turn, as a host with as many tracks does. */
Process makeInstances (const Setting& setting, int count)
{
    std::vector<Process> instances;
    for (auto n = 0; n < count; ++n)
        instances.push_back (makeChainProcess (setting.layout, setting.exponent, defaultBlockSize, hostRate));

    return [instances = std::move (instances),
            work = juce::AudioBuffer<float>()] (juce::AudioBuffer<float>& buffer) mutable
    {
        for (const auto& process : instances)
        {
            work.makeCopyOf (buffer, true);
            process (work);
        }
    };
}
} // namespace

void printCosts()
{
    for (const auto& setting : settings)
    {
        for (auto blockSize = 1; blockSize <= 8192; blockSize *= 2)
            print ("block size", setting, blockSize,
                   medianTimeOf (makeChainProcess (setting.layout, setting.exponent, blockSize, hostRate),
                                 blockSize, numTurns));

        for (const auto rate : { 44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0 })
            print ("sample rate", setting, rate,
                   medianTimeOf (makeChainProcess (setting.layout, setting.exponent, defaultBlockSize, rate),
                                 defaultBlockSize, numTurns));

        for (auto count = 1; count <= 64; count *= 2)
            print ("instances", setting, count,
                   medianTimeOf (makeInstances (setting, count), defaultBlockSize, count > 8 ? 2 : numTurns)
                       / count);
    }
}

} // namespace bench
