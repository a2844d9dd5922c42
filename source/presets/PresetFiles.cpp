#include "PresetFiles.h"

#include "state/CheckedText.h"
#include "state/CheckedXml.h"

namespace tessarin::PresetFiles
{

namespace
{
juce::Identifier makeFolderType (const juce::String& name)
{
    return "f_" + name.replaceCharacter (' ', '_').toLowerCase();
}

juce::ValueTree makeInitialPatch()
{
    return { presetType,
             { { name, initialPatchName },
               { author, "Tessarin" },
               { factory, true },
               { description, "A blank patch" },
               { categories, "Tools" } } };
}

/** Empty for a file named just ".tpre", where JUCE would give all of it. */
juce::String nameOf (const juce::File& file)
{
    return file.getFileName().upToLastOccurrenceOf (".", false, false);
}

/** An invalid tree if the file is no preset. */
juce::ValueTree readPreset (const juce::File& file, const juce::String& stateTag, bool isFactory)
{
    const auto xml = parseCheckedXml (file);

    if (xml == nullptr)
        return {};

    const auto state = juce::ValueTree::fromXml (*xml);

    // By identifier: the XML element's own comparison would ignore the case.
    if (! state.hasType (stateTag))
        return {};

    juce::ValueTree preset {
        presetType, { { path, file.getFullPathName() }, { name, nameOf (file) }, { factory, isFactory } }
    };

    for (const auto& attribute : { author, categories, description })
        preset.setProperty (attribute, state.getProperty (attribute).toString(), nullptr);

    return preset;
}

/** Each folder on the way takes the description that lies beside the preset file, the last file winning. */
void describeFolder (juce::ValueTree& node, const juce::String& piece, const juce::File& presetFile)
{
    node.setProperty (folderName, piece, nullptr);

    const auto text = presetFile.getSiblingFile ("_description.txt");

    if (const auto content = loadCheckedText (text))
        node.setProperty (description, *content, nullptr);
}

void addPresetFile (juce::ValueTree root, const juce::File& folder, const juce::File& file,
                    const juce::String& stateTag, bool isFactory)
{
    auto node = root;

    for (const auto& piece : juce::StringArray::fromTokens (file.getRelativePathFrom (folder), "/", {}))
    {
        if (piece.endsWith (fileExtension))
        {
            if (const auto preset = readPreset (file, stateTag, isFactory); preset.isValid())
                node.appendChild (preset, nullptr);
        }
        else
        {
            node = node.getOrCreateChildWithName (makeFolderType (piece), nullptr);
            describeFolder (node, piece, file);
        }
    }
}

/** The initial patch, then presets, then folders; each by name, by code point. */
struct NodeOrder
{
    static int compareElements (const juce::ValueTree& a, const juce::ValueTree& b)
    {
        const auto rank = [] (const juce::ValueTree& node)
        {
            if (node.getProperty (name).toString() == initialPatchName)
                return 0;

            return node.hasType (presetType) ? 1 : 2;
        };

        if (const auto difference = rank (a) - rank (b))
            return difference;

        const auto& key = a.hasType (presetType) ? name : folderName;
        return a.getProperty (key).toString().compare (b.getProperty (key).toString());
    }
};

void sortChildren (juce::ValueTree node)
{
    NodeOrder order;
    node.sort (order, nullptr, true);

    for (auto child : node)
        sortChildren (child);
}
} // namespace

juce::ValueTree scanFolder (const juce::File& folder, const juce::String& nameOfFolder,
                            const juce::String& stateTag, bool isFactoryFolder, bool& foundFile)
{
    juce::ValueTree root { makeFolderType (nameOfFolder), { { folderName, nameOfFolder } } };

    if (! folder.isDirectory())
        return root;

    if (isFactoryFolder)
        root.appendChild (makeInitialPatch(), nullptr);

    const auto files = folder.findChildFiles (juce::File::findFiles, true, juce::String ("*") + fileExtension,
                                              juce::File::FollowSymlinks::noCycles);
    foundFile = foundFile || ! files.isEmpty();

    for (const auto& file : files)
        addPresetFile (root, folder, file, stateTag, isFactoryFolder);

    sortChildren (root);
    return root;
}

Preset makePreset (const juce::ValueTree& node)
{
    return { node.getProperty (name).toString(),
             node.getProperty (presetIndex),
             node.getProperty (factory),
             node.getProperty (author).toString(),
             splitCategories (node.getProperty (categories).toString()),
             node.getProperty (path).toString(),
             node.getProperty (description).toString() };
}

void appendToList (juce::ValueTree node, juce::Array<Preset>& list)
{
    for (auto child : node)
    {
        if (! child.hasType (presetType))
        {
            appendToList (child, list);
            continue;
        }

        child.setProperty (presetIndex, list.size(), nullptr);
        list.add (makePreset (child));
    }
}

juce::StringArray splitCategories (const juce::String& text)
{
    auto entries = juce::StringArray::fromTokens (text, ",", {});
    entries.trim();
    entries.sort (false);
    return entries;
}

juce::String joinCategories (juce::StringArray entries)
{
    entries.removeEmptyStrings();
    return entries.joinIntoString (", ");
}

} // namespace tessarin::PresetFiles
