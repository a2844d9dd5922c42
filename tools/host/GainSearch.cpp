#include "GainSearch.h"

#include <algorithm>
#include <cmath>

namespace
{
struct Measured
{
    int gain;
    double loudness;
};

/** The least gain that is loud enough, and the greatest that is not, as far as the range has them. */
struct Bracket
{
    std::optional<Measured> below, above;
};

/** Where the next measurement may tell most: on the line through two measurements, or as far on as a decibel of gain
    can be a decibel of loudness, and then in doubled steps. */
int nextGain (const Bracket& bracket, double target, int step)
{
    if (bracket.below && bracket.above)
    {
        const auto& [below, above] = bracket;
        const auto span = above->loudness - below->loudness;
        const auto part = std::isfinite (span) && span > 0.0 ? (target - below->loudness) / span : 0.5;
        return below->gain + static_cast<int> (std::ceil (part * (above->gain - below->gain)));
    }

    const auto& known = bracket.below ? *bracket.below : *bracket.above;
    const auto missing = std::isfinite (known.loudness) ? target - known.loudness : 0.0;
    return known.gain
           + (bracket.below ? std::max (step, static_cast<int> (std::ceil (missing)))
                            : std::min (-step, static_cast<int> (std::floor (missing)) + 1));
}

Bracket bracketTarget (double target, const GainRange& range,
                       const std::function<double (GainSetting)>& loudnessAt)
{
    Bracket bracket;

    for (auto gain = std::clamp (0, range.leastInput, range.mostInput), step = 1;; step *= 2)
    {
        const Measured measured { gain, loudnessAt ({ gain, 0 }) };
        (measured.loudness >= target ? bracket.above : bracket.below) = measured;

        const auto least = bracket.below ? bracket.below->gain + 1 : range.leastInput;
        const auto most = bracket.above ? bracket.above->gain - 1 : range.mostInput;

        if (least > most)
            return bracket;

        gain = std::clamp (nextGain (bracket, target, step), least, most);
    }
}

int tenths (double decibels)
{
    return static_cast<int> (std::lround (10.0 * decibels));
}
} // namespace

GainResult findGain (double target, double tolerance, const GainRange& range,
                     const std::function<double (GainSetting)>& loudnessAt)
{
    const auto [below, above] = bracketTarget (target - tolerance, range, loudnessAt);
    const auto resultOf = [&] (GainSetting setting, double loudness)
    {
        const auto isReached = std::abs (loudness - target) <= tolerance;
        return GainResult { setting, loudness, isReached };
    };

    if (! above)
        return resultOf ({ below->gain, 0 }, below->loudness);

    auto best = resultOf ({ above->gain, 0 }, above->loudness);

    // The ceiling may follow the makeup later than the sections do, so that what is taken away is measured again.
    for (auto tries = 0; tries < 4 && ! best.isReached; ++tries)
    {
        auto next = best.setting;
        next.makeupTenths =
            std::clamp (next.makeupTenths + tenths (target - best.loudness), range.leastMakeupTenths, 0);

        if (next == best.setting)
            break;

        best = resultOf (next, loudnessAt (next));
    }

    if (! best.isReached && below && target - below->loudness < std::abs (best.loudness - target))
        best = resultOf ({ below->gain, 0 }, below->loudness);

    return best;
}
