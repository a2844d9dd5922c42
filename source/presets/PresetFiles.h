#pragma once

#include "presets/Preset.h"

#include <juce_data_structures/juce_data_structures.h>

/** The presets on disk as a tree of folders, and as the flat list in the tree's order. */
namespace tessarin::PresetFiles
{
inline constexpr auto fileExtension = ".tpre";
inline constexpr auto initialPatchName = "Initial Patch";

inline const juce::Identifier presetType { "preset" };
inline const juce::Identifier folderName { "folder_name" };
inline const juce::Identifier path { "path" };
inline const juce::Identifier name { "name" };
inline const juce::Identifier factory { "factory" };
inline const juce::Identifier author { "author" };
inline const juce::Identifier categories { "categories" };
inline const juce::Identifier description { "description" };
inline const juce::Identifier presetIndex { "preset_index" };

/** Reads every preset file below `folder` and returns their sorted tree. A folder that does not exist gives
    an empty node. Files that are no presets, by their content or their root tag `stateTag`, are left out
    silently.

    @param isFactoryFolder  adds the "Initial Patch", which exists in no file

    @param foundFile        set if any file with the preset extension was seen
*/
[[nodiscard]] juce::ValueTree scanFolder (const juce::File& folder, const juce::String& folderName,
                                          const juce::String& stateTag, bool isFactoryFolder,
                                          bool& foundFile);

/** Numbers the presets below `node` depth first, from the list's size on, and appends them to it. */
void appendToList (juce::ValueTree node, juce::Array<Preset>& list);

/** Reads the properties of a preset's node. */
[[nodiscard]] Preset makePreset (const juce::ValueTree& node);

/** Splits at "," and trims and sorts the entries. */
[[nodiscard]] juce::StringArray splitCategories (const juce::String& text);

/** As a text to read, without empty entries. */
[[nodiscard]] juce::String joinCategories (juce::StringArray entries);

} // namespace tessarin::PresetFiles
