#pragma once

#include "browser/BrowserList.h"
#include "browser/TypedName.h"
#include "presets/Preset.h"

#include <juce_data_structures/juce_data_structures.h>

#include <functional>
#include <optional>

namespace tessarin
{

/** The presets of a folder and its subfolders that pass the filter, in list order. The selected row is that
    of the current preset. Message thread. */
class PresetTableView final : public BrowserList, public juce::TableListBoxModel
{
public:
    enum Column
    {
        nameColumn = 2,
        authorColumn = 3,
        categoriesColumn = 4,
        descriptionColumn = 5
    };

    /** Names its rows for screen readers. */
    struct Table final : public juce::TableListBox
    {
        explicit Table (PresetTableView& ownerToUse) : owner (ownerToUse) {}

        juce::String getNameForRow (int row) override;

        PresetTableView& owner;
    };

    PresetTableView();
    ~PresetTableView() override;

    void setTree (const juce::ValueTree& folder);

    /** "All" asks for every one of these categories, "Any" for one of them; "Hide" turns the answer round.
        Without categories every preset is shown. */
    void setFilter (const juce::StringArray& categories, bool show, bool all);

    /** Selects the row of the current preset without a notification, or none if it is not shown. */
    void selectCurrentRow (bool scrollsThere = true);

    /** One if no preset is shown: it tells so. */
    int getNumRows() override;

    void paintRowBackground (juce::Graphics&, int row, int width, int height, bool isSelected) override;
    void paintCell (juce::Graphics&, int row, int column, int width, int height, bool isSelected) override;
    void cellClicked (int row, int column, const juce::MouseEvent&) override;

    /** Comes from screen readers; the table itself has no keyboard focus. */
    void returnKeyPressed (int row) override { clickRow (row); }

    juce::String getCellTooltip (int row, int column) override;

    bool keyPressed (const juce::KeyPress&) override;

    void focusGained (FocusChangeType cause) override { showFocus (true, cause); }

    void focusLost (FocusChangeType cause) override { showFocus (false, cause); }

    void resized() override;

    /** Of the rows, too: selects the current preset after a click. */
    void mouseUp (const juce::MouseEvent&) override;

    /** Takes the preset's list index. */
    std::function<void (int)> onPresetClicked;

    /** The list index of the current preset. Asked each time, since a host's restore changes it before it is told. */
    std::function<int()> getCurrentIndex = [] { return -1; };

    Table table { *this };

    /** Of the chosen folder and below. */
    juce::Array<Preset> allPresets;

    /** What passes the filter. */
    juce::Array<Preset> shownPresets;

    juce::StringArray filterCategories;
    bool filterShow = true;
    bool filterAll = true;

    /** By which letters go to a row. */
    TypedName typedName;

private:
    void addPresets (const juce::ValueTree& folder);
    [[nodiscard]] bool passesFilter (const Preset&) const;
    void updateRows();
    void updateRowHeight();
    void clickRow (int row);
    void showMenu (int row);
    [[nodiscard]] juce::Array<int> getLoadableRows() const;
    [[nodiscard]] std::optional<int> findTarget (const juce::KeyPress&, const juce::Array<int>& rows);
    [[nodiscard]] int findTyped (juce::juce_wchar character, const juce::Array<int>& rows);
    [[nodiscard]] juce::String getCellText (int row, int column) const;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetTableView)
};

} // namespace tessarin
