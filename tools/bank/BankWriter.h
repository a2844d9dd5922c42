#pragma once

#include "FactoryBank.h"

#include <juce_core/juce_core.h>

class OrvoAudioProcessor;

namespace factoryBank
{

/** Puts the processor on the default patch with the entry's settings. False if a setting names no parameter.
    Message thread. */
[[nodiscard]] bool apply (const Entry& entry, OrvoAudioProcessor& processor);

/** Writes every preset and every folder's description below `target`, as the product itself would save them.
    Files that are not of the bank stay. Message thread. */
[[nodiscard]] juce::Result writeBank (OrvoAudioProcessor& processor, const juce::File& target);

} // namespace factoryBank
