#include "PresetListing.h"

#include "common/ConfigFolder.h"
#include "presets/PresetTree.h"

namespace
{
namespace PresetTree = tessarin::PresetTree;

void append (const juce::ValueTree& node, const juce::String& folder, juce::Array<ListedPreset>& list)
{
    for (const auto& child : node)
    {
        const auto text = [&] (const juce::Identifier& property)
        { return child.getProperty (property).toString(); };

        if (child.hasType (PresetTree::presetType))
            list.add ({ text (PresetTree::name), folder, text (PresetTree::author),
                        text (PresetTree::categories), text (PresetTree::description) });
        else
            append (child, folder + "/" + text (PresetTree::folderName), list);
    }
}
} // namespace

juce::Array<ListedPreset> listPresets()
{
    const auto presets = tessarin::getConfigFolder().getChildFile ("Presets");
    juce::Array<ListedPreset> list;
    auto foundFile = false;

    for (const juce::String folder : { "Factory", "User" })
        append (PresetTree::scanFolder (presets.getChildFile (folder), folder, "orvo", folder == "Factory",
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
