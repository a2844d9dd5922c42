#pragma once

#include "Commands.h"

/** What "--help" prints: the commands, and one command with its options. */
[[nodiscard]] juce::String usageOfAll();
[[nodiscard]] juce::String usageOf (const Command&);

/** The first line of a command's help, which says what it does. */
[[nodiscard]] juce::String summaryOf (const Command&);

/** An option as it is written, with what stands for its value. */
[[nodiscard]] juce::String formOf (const Option&);
