#pragma once

#include <vector>

namespace kf
{

/** Counts of loudness values in steps of 0.1 LU, in a fixed table, so that counting never allocates and
    clearing costs only what was counted. */
class LoudnessHistogram
{
public:
    LoudnessHistogram();

    /** `key` is the loudness in tenths of a LU; keys outside the table are counted at its ends. */
    void add (int key) noexcept;

    void clear() noexcept;

    [[nodiscard]] bool isEmpty() const noexcept { return highest < lowest; }

    [[nodiscard]] int largestKey() const noexcept { return highest; }

    /** The first key with a count at or above `key`; only while `key` is no larger than `largestKey`. */
    [[nodiscard]] int firstKeyFrom (int key) const noexcept;

    [[nodiscard]] int countAt (int key) const noexcept;

private:
    /** -100 LUFS is the lowest value that is counted. Squares in single precision end below 390 LUFS; the
        table has room for the squares of any single precision sample, near 770. */
    static constexpr int smallestTableKey = -1000;
    static constexpr int largestTableKey = 8000;

    static constexpr int noHighest = smallestTableKey - 1;
    static constexpr int noLowest = largestTableKey + 1;

    std::vector<int> counts;
    int lowest = noLowest;
    int highest = noHighest;
};

} // namespace kf
