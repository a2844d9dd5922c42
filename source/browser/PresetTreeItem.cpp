#include "PresetTreeItem.h"

#include "browser/PresetTree.h"
#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "presets/PresetFiles.h"
#include "widgets/Contrast.h"

#include <algorithm>

namespace tessarin
{

PresetTreeItem::PresetTreeItem (const juce::ValueTree& folderToShow, PresetTree& owner)
    : folder (folderToShow), tree (owner)
{
    setDrawsInLeftMargin (true);
    readFolder();

    if (folder.hasType ("f_factory"))
        setOpen (true);

    // The folder may have been chosen before its parent was closed.
    if (folder == tree.getChosenFolder())
        setSelected (true, false, juce::dontSendNotification);
}

void PresetTreeItem::setFolder (const juce::ValueTree& newFolder)
{
    folder = newFolder;
    readFolder();
    itemOpennessChanged (isOpen());
}

void PresetTreeItem::readFolder()
{
    const auto isFolder = [] (const juce::ValueTree& child)
    { return ! child.hasType (PresetFiles::presetType); };

    hasSubfolders = std::any_of (folder.begin(), folder.end(), isFolder);

    if (folder.getType().toString().startsWith ("f_"))
        tooltip = folder[PresetFiles::description].toString();
}

void PresetTreeItem::paintItem (juce::Graphics& g, int width, int height)
{
    auto& view = *getOwnerView();
    const auto text = view.findColour (luna::ColourIds::highlightedTextColourId);

    if (isSelected())
        g.fillAll (luna::Contrast::darkenFor (text, view.findColour (luna::ColourIds::primaryColourId)));
    else if (tree.isUnderMouse (view.getItemComponent (this)))
        g.fillAll (view.findColour (luna::ColourIds::elementColourId));

    g.setColour (text);
    g.setFont (juce::FontOptions (luna::FontHeights::control));
    g.drawText (folder[PresetFiles::folderName].toString(), 4, 0, width - 8, height,
                juce::Justification::centredLeft, true);
}

void PresetTreeItem::itemOpennessChanged (bool)
{
    clearSubItems();

    for (const auto& child : folder)
        if (! child.hasType (PresetFiles::presetType))
            addSubItem (new PresetTreeItem (child, tree));
}

void PresetTreeItem::itemSelectionChanged (bool isNowSelected)
{
    if (isNowSelected)
        tree.chooseFolder (folder);
}

juce::String PresetTreeItem::getAccessibilityName()
{
    return folder[PresetFiles::folderName].toString();
}

} // namespace tessarin
