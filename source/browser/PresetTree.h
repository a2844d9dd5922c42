#pragma once

#include "browser/BrowserList.h"
#include "browser/PresetTreeItem.h"

#include <functional>
#include <memory>

namespace tessarin
{

/** The folders of presets, of which one is chosen: at first the root, which is not shown and holds all
    presets. A click below the folders chooses it again. Message thread. */
class PresetTree final : public BrowserList
{
public:
    PresetTree();
    ~PresetTree() override;

    /** Shows the folders of a preset tree, open and closed as before. Chooses the folder that was chosen
        before, or the root if it is gone, and calls `onFolderSelected`. */
    void setTree (const juce::ValueTree& newTree);

    /** As a click on the folder's item does. */
    void chooseFolder (const juce::ValueTree& folder);

    [[nodiscard]] const juce::ValueTree& getTree() const { return tree; }

    [[nodiscard]] const juce::ValueTree& getChosenFolder() const { return chosenFolder; }

    void resized() override;
    void focusOfChildComponentChanged (FocusChangeType) override;

    // Of the items, too.
    void mouseDown (const juce::MouseEvent&) override;

    std::function<void (juce::ValueTree)> onFolderSelected;

private:
    /** Starts at the first row when no folder is selected. */
    struct View final : public juce::TreeView
    {
        bool keyPressed (const juce::KeyPress&) override;
    };

    juce::ValueTree tree, chosenFolder;

    // The view lets go of its items when it is destroyed.
    std::unique_ptr<PresetTreeItem> root;

public:
    View treeView;

private:
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetTree)
};

} // namespace tessarin
