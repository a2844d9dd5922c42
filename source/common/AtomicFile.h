#pragma once

#include <juce_core/juce_core.h>

/** Replaces a file's content as a whole: a temporary file in the same folder, then a rename. False if any of
    it fails, a full disk included; the old content is then untouched. */
[[nodiscard]] bool replaceFileAtomically (const juce::File& target, const void* data, size_t numBytes);
