#pragma once

#include <juce_core/juce_core.h>

/** A preset as the product lists it. */
struct ListedPreset
{
    juce::String name;

    /** Its folders joined with "/", from "Factory" or "User" on. */
    juce::String folder;
    juce::String author, categories, description;
};

/** The presets in the order of the module's programs, read from the same folders with the product's own code.
    */
[[nodiscard]] juce::Array<ListedPreset> listPresets();

/** The first preset with this name, or with these folders and name ("Factory/Drums/Kick"); -1 if there is
    none. */
[[nodiscard]] int findPreset (const juce::String& name);
