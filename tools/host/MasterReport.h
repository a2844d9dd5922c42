#pragma once

#include "MasterResult.h"

/** The figures of a batch as JSON, levels that nothing has as null. */
[[nodiscard]] juce::String asJson (const MasterOrder&, const std::vector<MasterResult>&);

/** Where the page goes, or no file if the name is empty. Throws if it cannot be written there. */
[[nodiscard]] juce::File reportFileFrom (const juce::String& name, bool mayReplace);

/** Writes one page of HTML that needs nothing else: a table, and each file's waveforms and loudness over time. */
void writeReport (const juce::File&, const MasterOrder&, const std::vector<MasterResult>&, bool mayReplace);
