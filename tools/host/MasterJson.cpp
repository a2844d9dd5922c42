#include "MasterReport.h"

#include <cmath>

namespace
{
juce::var number (double value)
{
    return std::isfinite (value) ? juce::var (value) : juce::var();
}

juce::var object (std::initializer_list<std::pair<const char*, juce::var>> members)
{
    auto* const result = new juce::DynamicObject();
    for (const auto& [name, value] : members)
        result->setProperty (name, value);

    return result;
}

juce::var figuresOf (const StreamFigures& figures)
{
    return object (
        { { "integrated", number (figures.integrated) },
          { "range", number (figures.range) },
          { "short_term", number (figures.shortTerm) },
          { "true_peak", number (figures.truePeak) },
          { "meter", figures.meter == "-" ? juce::var() : juce::var (figures.meter.getDoubleValue()) } });
}

juce::var oversOf (const MasterResult& result)
{
    juce::Array<juce::var> overs;
    for (const auto& over : result.overs)
        overs.add (object ({ { "seconds", number (over.seconds) },
                             { "length", number (over.length) },
                             { "true_peak", number (over.level) } }));

    return overs;
}

juce::var fileOf (const MasterOrder& order, const MasterResult& result)
{
    const auto input = result.job.input.getFullPathName(), output = result.job.output.getFullPathName();

    if (result.error.isNotEmpty())
        return object (
            { { "input", input }, { "output", output }, { "written", false }, { "error", result.error } });

    return object (
        { { "input", input },
          { "output", output },
          { "written", result.isWritten },
          { "reached", result.isReached },
          { "missed_because", result.isReached ? juce::var() : juce::var (order.whyMissed (result)) },
          { "in_gain", result.gains.input },
          { "makeup", number (result.makeup) },
          { "before", figuresOf (result.before) },
          { "after", figuresOf (result.after) },
          { "overs", oversOf (result) } });
}
} // namespace

juce::String asJson (const MasterOrder& order, const std::vector<MasterResult>& results)
{
    juce::Array<juce::var> files;
    for (const auto& result : results)
        files.add (fileOf (order, result));

    return juce::JSON::toString (object ({ { "version", order.version },
                                           { "loudness", number (order.target) },
                                           { "peak", number (order.peakLimit) },
                                           { "album", order.isAlbum },
                                           { "settings", order.settings },
                                           { "files", files } }),
                                 juce::JSON::FormatOptions().withMaxDecimalPlaces (2));
}
