#pragma once

#include <juce_data_structures/juce_data_structures.h>
#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

class PresetTree;

/** A folder of presets in the browser's tree; presets have no item. Message thread. */
class PresetTreeItem final : public juce::TreeViewItem
{
public:
    PresetTreeItem (const juce::ValueTree& folder, PresetTree& owner);

    /** Makes the item stand for another folder, with new items below it. */
    void setFolder (const juce::ValueTree& newFolder);

    bool mightContainSubItems() override { return hasSubfolders; }

    void paintItem (juce::Graphics&, int width, int height) override;
    void itemOpennessChanged (bool isNowOpen) override;
    void itemSelectionChanged (bool isNowSelected) override;

    juce::String getTooltip() override { return tooltip; }

    juce::String getAccessibilityName() override;

    /** So that the same folder is found again after a rescan. */
    juce::String getUniqueName() const override { return folder.getType().toString(); }

    int getItemHeight() const override { return 22; }

private:
    void readFolder();

    juce::ValueTree folder;
    PresetTree& tree;
    juce::String tooltip;
    bool hasSubfolders = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetTreeItem)
};

} // namespace tessarin
