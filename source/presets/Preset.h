#pragma once

#include <juce_core/juce_core.h>

namespace tessarin
{

/** A preset as listed; a plain value. */
struct Preset
{
    /** The file's name without its extension; the file's content has no say in it. */
    juce::String name;

    /** Position in the flat list, and the host's program number. */
    int index = 0;

    bool factory = false;
    juce::String author;

    /** Trimmed and sorted by code point; empty entries stay. */
    juce::StringArray categories;

    /** Empty for "Initial Patch", which has no file. */
    juce::String path;
    juce::String description;
};

} // namespace tessarin
