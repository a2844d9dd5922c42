#include "PresetTree.h"

namespace tessarin
{

namespace
{
/** The types of the folders below the root, down to this one. */
juce::StringArray pathOf (juce::ValueTree folder)
{
    juce::StringArray path;

    for (; folder.getParent().isValid(); folder = folder.getParent())
        path.insert (0, folder.getType().toString());

    return path;
}

juce::ValueTree findFolder (const juce::ValueTree& root, const juce::StringArray& path)
{
    auto folder = root;

    for (const auto& type : path)
        folder = folder.getChildWithName (type);

    return folder.isValid() ? folder : root;
}
} // namespace

PresetTree::PresetTree()
{
    addAndMakeVisible (treeView);
    treeView.setTitle ("Preset folders");
    treeView.setRootItemVisible (false);
    treeView.setColour (juce::TreeView::selectedItemBackgroundColourId, juce::Colours::transparentBlack);
    treeView.addMouseListener (this, true);

    // The tree itself is the tab key's one stop.
    treeView.getViewport()->setWantsKeyboardFocus (false);
}

PresetTree::~PresetTree()
{
    treeView.removeMouseListener (this);
}

void PresetTree::setTree (const juce::ValueTree& newTree)
{
    tree = newTree;
    chosenFolder = findFolder (tree, pathOf (chosenFolder));

    if (root == nullptr)
    {
        root = std::make_unique<PresetTreeItem> (tree, *this);
        treeView.setRootItem (root.get());
    }
    else
    {
        const auto openness = root->getOpennessState();
        root->setFolder (tree);
        root->restoreOpennessState (*openness);
    }

    if (onFolderSelected)
        onFolderSelected (chosenFolder);
}

void PresetTree::chooseFolder (const juce::ValueTree& folder)
{
    chosenFolder = folder;

    if (onFolderSelected)
        onFolderSelected (chosenFolder);
}

void PresetTree::resized()
{
    treeView.setBounds (getLocalBounds());
}

void PresetTree::focusOfChildComponentChanged (FocusChangeType cause)
{
    showFocus (hasKeyboardFocus (true), cause);
}

void PresetTree::mouseDown (const juce::MouseEvent& event)
{
    if (treeView.getItemAt (event.getEventRelativeTo (&treeView).y) != nullptr)
        return;

    treeView.clearSelectedItems();
    chooseFolder (tree);
}

bool PresetTree::View::keyPressed (const juce::KeyPress& key)
{
    if (getNumSelectedItems() > 0 || key != juce::KeyPress::downKey || getItemOnRow (0) == nullptr)
        return juce::TreeView::keyPressed (key);

    getItemOnRow (0)->setSelected (true, true);
    return true;
}

} // namespace tessarin
