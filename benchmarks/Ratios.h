#pragma once

#include "Rows.h"

#include <concepts>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/** What a kernel gains over the plain form of the same sums. */
namespace bench
{
using Process = std::function<void (juce::AudioBuffer<float>&)>;

/** What is timed; with a reading where it only measures and leaves the block as it is. */
struct Form
{
    template <std::invocable<juce::AudioBuffer<float>&> Function>
    Form (Function function, std::function<double()> newReading = {})
        : process (std::move (function)), reading (std::move (newReading))
    {
    }

    Process process;
    std::function<double()> reading;
};

struct Pair
{
    std::string name;
    std::function<Form()> makePlain, makeKernel;
    int blockSize = defaultBlockSize;
};

void addOversamplerPairs (std::vector<Pair>&);
void addChainPairs (std::vector<Pair>&);
void addCurvePairs (std::vector<Pair>&);
void addMeterPairs (std::vector<Pair>&);

/** Per change of a parameter. */
void addParameterPairs (std::vector<Pair>&);
void addSplitterPairs (std::vector<Pair>&);

/** Measures each pair whose name contains `filter`, with every instruction set of this processor, and prints a line
    for each: medians in ns per stereo sample, and the median of how many times faster. Both forms take turns, so that
    what else the machine does meets both. Throws if they do not give the same audio, or the same readings. */
void printRatios (const std::string& filter);

/** The whole plug-in, every section at work with "Soft I". */
Process makeChainProcess (int layout, int exponent, int blockSize, double rate);

/** In ns per stereo sample: the median of several turns in blocks of one size. */
double medianTimeOf (const Process&, int blockSize, int numTurns);

/** Prints what the plug-in costs against block size, sample rate and number of instances, a line of four
    values separated by commas for each: kind, setting, place on the axis, ns per stereo sample and instance. */
void printCosts();
} // namespace bench
