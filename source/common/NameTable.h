#pragma once

#include <juce_core/juce_core.h>

#include <array>

/** A constant table of names, for JUCE's calls. */
template <size_t size>
[[nodiscard]] juce::StringArray toStringArray (const std::array<const char*, size>& names)
{
    return { names.data(), static_cast<int> (size) };
}
