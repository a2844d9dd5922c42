#include "MasterResult.h"

#include <cmath>

void Outline::add (const juce::AudioBuffer<float>& block, int frames)
{
    for (auto frame = 0; frame < frames; ++frame, ++position)
    {
        auto& column = columns[static_cast<size_t> (juce::jlimit<juce::int64> (
            0, numColumns - 1, position * numColumns / juce::jmax<juce::int64> (1, total)))];

        for (auto channel = 0; channel < block.getNumChannels(); ++channel)
        {
            const auto sample = block.getSample (channel, frame);
            if (! std::isfinite (sample))
                continue;

            column.lowest = juce::jmin (column.lowest, sample);
            column.highest = juce::jmax (column.highest, sample);
        }
    }
}

juce::String MasterOrder::whyMissed (const MasterResult& result) const
{
    const auto reached = isAlbum ? juce::String ("the album comes") : juce::String ("it comes");
    const auto near = reached + " to " + levelText (result.loudness) + " LUFS";

    if (! std::isfinite (result.loudness))
        return "there is too little sound to have a loudness";

    if (result.loudness < target && result.gains.input == GainRange().mostInput)
        return near + " with the input gain at its most";

    if (! makeupIsFree)
        return near
               + "; the input gain works in whole decibels, and the makeup of Post is not free for the rest";

    return near + "; the gains have no room for more";
}
