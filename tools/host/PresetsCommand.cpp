#include "Commands.h"
#include "Failure.h"
#include "PresetListing.h"

#include <iostream>

namespace
{
void runPresets (const Arguments&)
{
    const auto presets = listPresets();

    if (presets.isEmpty())
        throw Failure ("no presets are installed; scripts/install.sh installs the factory bank");

    juce::String folder;

    for (const auto& preset : presets)
    {
        if (preset.folder != folder)
            std::cout << (folder.isEmpty() ? "" : "\n") << (folder = preset.folder) << '\n';

        std::cout << "  " << preset.name.paddedRight (' ', 26) << ' '
                  << preset.categories.paddedRight (' ', 26) << ' '
                  << preset.description.replaceCharacters ("\r\n", "  ") << '\n';
    }
}
} // namespace

Command presetsCommand()
{
    return {
        "presets", "", "lists the presets by folder, with their categories and descriptions", {}, runPresets
    };
}
