#include "LoudnessHistogram.h"

#include <algorithm>

namespace kf
{

LoudnessHistogram::LoudnessHistogram()
    : counts (static_cast<size_t> (largestTableKey - smallestTableKey + 1), 0)
{
}

void LoudnessHistogram::add (int key) noexcept
{
    key = std::clamp (key, smallestTableKey, largestTableKey);
    ++counts[static_cast<size_t> (key - smallestTableKey)];
    lowest = std::min (lowest, key);
    highest = std::max (highest, key);
}

void LoudnessHistogram::clear() noexcept
{
    for (auto key = lowest; key <= highest; ++key)
        counts[static_cast<size_t> (key - smallestTableKey)] = 0;

    lowest = noLowest;
    highest = noHighest;
}

int LoudnessHistogram::firstKeyFrom (int key) const noexcept
{
    key = std::max (key, lowest);

    while (key < highest && countAt (key) == 0)
        ++key;

    return key;
}

int LoudnessHistogram::countAt (int key) const noexcept
{
    return key < lowest || key > highest ? 0 : counts[static_cast<size_t> (key - smallestTableKey)];
}

} // namespace kf
