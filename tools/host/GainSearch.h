#pragma once

#include <functional>
#include <optional>

/** What brings a file to a loudness. */
struct GainSetting
{
    /** In whole decibels, as the input gain works. */
    int input = 0;

    /** What the makeup of Post adds to its own value, in tenths of a decibel. */
    int makeupTenths = 0;

    bool operator== (const GainSetting&) const = default;
};

/** The bounds of a search, in the units of GainSetting. */
struct GainRange
{
    int leastInput = -18, mostInput = 18;

    /** How far the makeup may be lowered: 0 or less, 0 if it is not free. */
    int leastMakeupTenths = 0;
};

struct GainResult
{
    GainSetting setting;

    /** What `setting` gives, in LUFS; minus infinity if nothing has a loudness. */
    double loudness = 0.0;
    bool isReached = false;
};

/** Finds the gains that bring the loudness within `tolerance` of `target`, in LU and LUFS, or else come nearest.

    The loudness of a clipped signal rises with the input gain, more slowly than it. The least whole decibel that is loud
    enough is looked for first; what is too much then is taken away behind the clippers, where a gain changes nothing but
    the level. `loudnessAt` measures, and is asked about eight times. */
[[nodiscard]] GainResult findGain (double target, double tolerance, const GainRange& range,
                                   const std::function<double (GainSetting)>& loudnessAt);
