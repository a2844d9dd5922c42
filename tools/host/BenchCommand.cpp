#include "Commands.h"
#include "common/Sections.h"
#include "PluginHost.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <vector>

namespace
{
constexpr auto sampleRate = 48000.0;

/** Nanoseconds per stereo sample frame: the median of five runs over noise, `seconds` of audio in all. */
double measure (PluginHost& host, int blockSize, double seconds)
{
    juce::Random random (1);
    juce::AudioBuffer<float> noise (2, blockSize), block (2, blockSize);

    for (auto channel = 0; channel < 2; ++channel)
        for (auto i = 0; i < blockSize; ++i)
            noise.setSample (channel, i, 2.0f * random.nextFloat() - 1.0f);

    host.prepare (sampleRate, blockSize);

    std::array<double, 5> runs {};
    const auto blocks = juce::jmax (
        1, juce::roundToInt (seconds * sampleRate / (blockSize * static_cast<int> (runs.size()))));

    for (auto& run : runs)
    {
        auto ticks = juce::int64 {};

        for (auto i = 0; i < blocks; ++i)
        {
            block.makeCopyOf (noise, true);
            const auto start = juce::Time::getHighResolutionTicks();
            host.process (block);
            ticks += juce::Time::getHighResolutionTicks() - start;
        }

        run = 1.0e9 * juce::Time::highResolutionTicksToSeconds (ticks) / blocks / blockSize;
    }

    std::nth_element (runs.begin(), runs.begin() + 2, runs.end());
    return runs[2];
}

void runBench (const Arguments& arguments)
{
    const auto seconds = arguments.numberOf ("--seconds", 5.0, 0.1, 600.0);
    PluginHost host (findModule (arguments.valueOf ("--plugin", {})));
    host.setChannels (2);

    for (auto& parameter : host.getParameters())
        if (parameter.getId().startsWith ("threshold_"))
            parameter.setFromText ("-6");

    std::cout
        << "stereo at 48 kHz, every section clipping noise at -6 dB; ns per sample frame, times real time\n"
           "layout        oversampling    block 64               block 512\n";

    for (auto layout = 0; layout < static_cast<int> (Layout::names.size()); ++layout)
        for (auto factor = 0; factor <= Oversampling::largestExponent; ++factor)
        {
            host.getParameter ("layout").setFromText (juce::String (layout));
            host.getParameter ("oversampling").setFromText (juce::String (factor));
            host.prepare (sampleRate, 64);

            std::cout << host.getParameter ("layout").getText().paddedRight (' ', 14)
                      << host.getParameter ("oversampling").getText().paddedRight (' ', 12);

            for (const auto blockSize : { 64, 512 })
            {
                const auto nanoseconds = measure (host, blockSize, seconds);
                std::cout << juce::String (nanoseconds, 1).paddedLeft (' ', 11) << " ns"
                          << juce::String (1.0e9 / sampleRate / nanoseconds, 1).paddedLeft (' ', 8) << " x";
            }

            std::cout << std::endl;
        }
}
} // namespace

Command benchCommand()
{
    return { "bench",
             "",
             "measures the loaded module's speed per layout, oversampling and block size",
             { { "--seconds", "S", "audio per measurement, 0.1 to 600 (else 5)" }, pluginOption },
             runBench };
}
