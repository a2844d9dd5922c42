#pragma once

#include "browser/CategoryStrip.h"
#include "browser/FilterOptionsToggle.h"
#include "browser/PresetDisplay.h"
#include "browser/PresetTableView.h"
#include "browser/PresetTree.h"
#include "presets/PresetManager.h"

namespace tessarin
{

/** The panel over the editor in which presets are found by folder and category. Escape hides it. Message
    thread.

    Folders, badges and rows are read each time it is shown, and stay as they are until the next time; a save
    meanwhile only moves the rows' list indices.
*/
class PresetBrowser final : public juce::Component, public PresetManager::Listener
{
public:
    explicit PresetBrowser (PresetManager& manager);
    ~PresetBrowser() override;

    void presetSaved (Preset preset) override;
    void presetLoaded (Preset preset) override;

    void presetRestored (Preset preset) override { presetLoaded (std::move (preset)); }

    void visibilityChanged() override;
    bool keyPressed (const juce::KeyPress&) override;

    /** Hands the keyboard to the presets. */
    void focusGained (FocusChangeType) override { table.grabKeyboardFocus(); }

    void paint (juce::Graphics&) override;
    void resized() override;
    void lookAndFeelChanged() override;

    void parentHierarchyChanged() override { lookAndFeelChanged(); }

    /** Runs for the escape key; whoever shows the browser hides it. */
    std::function<void()> onCloseRequest;

    PresetTree tree;
    PresetTableView table;
    PresetDisplay display;
    juce::Label filterLabel { {}, "Category Filter" };
    juce::TextButton randomButton { "Random" };
    FilterOptionsToggle modeToggle { "Show", "Hide" };
    FilterOptionsToggle matchToggle { "All", "Any" };
    CategoryStrip categories;
    juce::StretchableLayoutManager layout;
    juce::StretchableLayoutResizerBar resizerBar { &layout, 1, true };

private:
    void addChildren();
    void connect();
    void showCategories();
    void applyFilter();
    void loadPreset (int index);
    void loadRandomPreset();
    void showPreset (const Preset&);
    [[nodiscard]] juce::Rectangle<int> getStripArea();
    void layOutStrip();

    PresetManager& presetManager;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetBrowser)
};

} // namespace tessarin
