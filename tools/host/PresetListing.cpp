#include "PresetListing.h"

#include "common/ConfigFolder.h"
#include "presets/PresetFiles.h"

namespace
{
namespace PresetFiles = tessarin::PresetFiles;

void append (const juce::ValueTree& node, const juce::String& folder, juce::Array<ListedPreset>& list)
{
    for (const auto& child : node)
    {
        const auto text = [&] (const juce::Identifier& property)
        { return child.getProperty (property).toString(); };

        if (child.hasType (PresetFiles::presetType))
            list.add ({ text (PresetFiles::name), folder, text (PresetFiles::author),
                        text (PresetFiles::categories), text (PresetFiles::description) });
        else
            append (child, folder + "/" + text (PresetFiles::folderName), list);
    }
}
} // namespace

juce::Array<ListedPreset> listPresets()
{
    const auto presets = tessarin::getConfigFolder().getChildFile ("Presets");
    juce::Array<ListedPreset> list;
    auto foundFile = false;

    for (const juce::String folder : { "Factory", "User" })
        append (PresetFiles::scanFolder (presets.getChildFile (folder), folder, "orvo", folder == "Factory",
                                         foundFile),
                folder, list);

    return list;
}

int findPreset (const juce::String& name)
{
    const auto list = listPresets();

    for (auto i = 0; i < list.size(); ++i)
        if (list.getReference (i).name == name
            || list.getReference (i).folder + "/" + list.getReference (i).name == name)
            return i;

    return -1;
}
