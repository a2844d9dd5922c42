#include "LoudnessGates.h"

#include <cmath>

namespace kf
{

namespace
{
constexpr auto loudnessOffset = 0.691;

int toStartKey (double gate)
{
    return static_cast<int> (gate * 10.0);
}
} // namespace

double toLoudness (double meanSquare)
{
    return 10.0 * std::log10 (meanSquare) - loudnessOffset;
}

int toKey (double loudness)
{
    return static_cast<int> (std::round (10.0 * loudness));
}

bool isAboveGate (const LoudnessHistogram& blocks, double gate)
{
    return ! blocks.isEmpty() && gate < blocks.largestKey() * 0.1;
}

float gatedLoudness (const LoudnessHistogram& blocks, double gate)
{
    auto count = 0;
    auto sum = 0.0;

    for (auto key = blocks.firstKeyFrom (toStartKey (gate)); key <= blocks.largestKey(); ++key)
    {
        if (const auto countAtKey = blocks.countAt (key))
        {
            count += countAtKey;
            sum += countAtKey * std::pow (10.0, (key * 0.1 + loudnessOffset) * 0.1);
        }
    }

    return count < 1 ? noLoudness : static_cast<float> (toLoudness (sum / count));
}

LoudnessRange gatedRange (const LoudnessHistogram& blocks, double gate)
{
    const auto first = blocks.firstKeyFrom (toStartKey (gate));
    const auto last = blocks.largestKey();

    auto total = 0;
    for (auto key = first; key <= last; ++key)
        total += blocks.countAt (key);

    auto start = first;
    for (auto below = blocks.countAt (start); below < 0.1 * total && start < last;)
        below += blocks.countAt (++start);

    auto end = last;
    for (auto above = blocks.countAt (end); above < 0.05 * total && end > first;)
        above += blocks.countAt (--end);

    return { static_cast<float> (start * 0.1), static_cast<float> (end * 0.1) };
}

} // namespace kf
