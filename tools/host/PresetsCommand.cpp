#include "Commands.h"
#include "common/ConfigFolder.h"
#include "Failure.h"
#include "PluginHost.h"
#include "PresetListing.h"

#include <iostream>

namespace
{
void runPresets (const Arguments& arguments)
{
    // It brings the factory presets up to date.
    const PluginHost host (findModule (arguments.valueOf (pluginOption.name, {})));
    const auto presets = listPresets();

    if (presets.isEmpty())
        throw Failure ("there are no presets, and the module could not put its own into "
                       + tessarin::getConfigFolder().getFullPathName());

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
    return { "presets",
             "",
             "lists the presets by folder, with their categories and descriptions",
             { pluginOption },
             runPresets };
}
