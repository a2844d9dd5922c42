#include "PresetTableView.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "presets/PresetFiles.h"
#include "widgets/Contrast.h"

#include <algorithm>

namespace tessarin
{

namespace
{
constexpr auto rowHeight = 22;
constexpr auto textInset = 4;
constexpr auto nothingFound = "No presets found";

juce::Font makeFont()
{
    return juce::Font (juce::FontOptions (luna::FontHeights::control));
}
} // namespace

PresetTableView::PresetTableView()
{
    addAndMakeVisible (table);
    setTitle ("Presets");
    table.setTitle (getTitle());
    table.setModel (this);
    table.setHeaderHeight (rowHeight);
    table.setOutlineThickness (0);
    table.getViewport()->setScrollBarsShown (true, false);
    table.addMouseListener (this, true);

    // The cursor keys load presets here, where the table's own would only move the selection.
    table.setWantsKeyboardFocus (false);
    setWantsKeyboardFocus (true);

    auto& header = table.getHeader();
    constexpr auto columnFlags = juce::TableHeaderComponent::visible | juce::TableHeaderComponent::resizable;
    constexpr auto narrowest = 50;
    header.addColumn ("Name", nameColumn, 150, narrowest, -1, columnFlags);
    header.addColumn ("Author", authorColumn, 100, narrowest, -1, columnFlags);
    header.addColumn ("Categories", categoriesColumn, 100, narrowest, -1, columnFlags);
    header.addColumn ("Description", descriptionColumn, 100, narrowest, -1, columnFlags);
    header.setStretchToFitActive (true);
    header.setPopupMenuActive (false);

    updateRows();
}

PresetTableView::~PresetTableView()
{
    table.removeMouseListener (this);
    table.setModel (nullptr);
}

//======================================================================================================================
// Presets and filter

void PresetTableView::setTree (const juce::ValueTree& folder)
{
    allPresets.clear();
    addPresets (folder);
    updateRows();
}

void PresetTableView::addPresets (const juce::ValueTree& folder)
{
    for (const auto& child : folder)
    {
        if (child.hasType (PresetFiles::presetType))
            allPresets.add (PresetFiles::makePreset (child));
        else
            addPresets (child);
    }
}

void PresetTableView::setFilter (const juce::StringArray& categories, bool show, bool all)
{
    filterCategories = categories;
    filterShow = show;
    filterAll = all;
    updateRows();
}

bool PresetTableView::passesFilter (const Preset& preset) const
{
    const auto numMissing =
        std::count_if (filterCategories.begin(), filterCategories.end(),
                       [&preset] (const auto& category) { return ! preset.categories.contains (category); });
    const auto matches = filterAll ? numMissing == 0 : numMissing < filterCategories.size();

    return filterCategories.isEmpty() || matches == filterShow;
}

void PresetTableView::updateRows()
{
    shownPresets.clear();

    for (const auto& preset : allPresets)
        if (passesFilter (preset))
            shownPresets.add (preset);

    updateRowHeight();
    table.updateContent();
    table.repaint();

    // The scroll bar may have come or gone.
    table.getHeader().resizeAllColumnsToFit (table.getVisibleContentWidth());
    selectCurrentRow();
}

/** The one row of an empty table takes all of it. */
void PresetTableView::updateRowHeight()
{
    const auto height = shownPresets.isEmpty()
                            ? juce::jmax (rowHeight, table.getHeight() - table.getHeaderHeight())
                            : rowHeight;

    if (table.getRowHeight() != height)
        table.setRowHeight (height);
}

//======================================================================================================================
// Selection

void PresetTableView::selectCurrentRow (bool scrollsThere)
{
    auto* current =
        std::find_if (shownPresets.begin(), shownPresets.end(),
                      [index = getCurrentIndex()] (const Preset& preset) { return preset.index == index; });
    juce::SparseSet<int> rows;
    juce::String selectedName;

    if (current != shownPresets.end())
    {
        const auto row = static_cast<int> (std::distance (shownPresets.begin(), current));
        rows.addRange ({ row, row + 1 });
        selectedName = current->name;

        if (scrollsThere)
            table.scrollToEnsureRowIsOnscreen (row);
    }

    table.setSelectedRows (rows, juce::dontSendNotification);
    setDescription (selectedName);
}

void PresetTableView::clickRow (int row)
{
    if (juce::isPositiveAndBelow (row, shownPresets.size()) && onPresetClicked)
        onPresetClicked (shownPresets[row].index);
}

void PresetTableView::cellClicked (int row, int, const juce::MouseEvent& event)
{
    if (! juce::isPositiveAndBelow (row, shownPresets.size()))
        return;

    if (event.mods.isPopupMenu())
        showMenu (row);
    else if (event.mods.isLeftButtonDown())
        clickRow (row);
}

void PresetTableView::showMenu (int row)
{
    juce::PopupMenu menu;
    menu.setLookAndFeel (&getLookAndFeel());
    menu.addItem ("Reveal location", [file = juce::File (shownPresets[row].path)] { file.revealToUser(); });

    // Inside the browser, so that the menu has the editor's scale.
    menu.showMenuAsync (juce::PopupMenu::Options()
                            .withParentComponent (getParentComponent())
                            .withMousePosition()
                            .withDeletionCheck (*this));
}

bool PresetTableView::keyPressed (const juce::KeyPress& key)
{
    const auto rows = getLoadableRows();
    const auto target = findTarget (key, rows);

    if (target.has_value() && *target != rows.indexOf (table.getSelectedRow())
        && juce::isPositiveAndBelow (*target, rows.size()))
        clickRow (rows[*target]);

    return target.has_value();
}

/** The keys pass the rows whose presets are gone. */
juce::Array<int> PresetTableView::getLoadableRows() const
{
    juce::Array<int> rows;

    for (auto row = 0; row < shownPresets.size(); ++row)
        if (shownPresets.getReference (row).index >= 0)
            rows.add (row);

    return rows;
}

/** The place among the rows to which a key goes, or one outside them; nothing for a key that has no use here. */
std::optional<int> PresetTableView::findTarget (const juce::KeyPress& key, const juce::Array<int>& rows)
{
    const auto selected = rows.indexOf (table.getSelectedRow());
    const auto last = rows.size() - 1;
    const auto page = juce::jmax (1, table.getNumRowsOnScreen() - 1);

    if (key == juce::KeyPress::upKey)
        return selected - 1;

    if (key == juce::KeyPress::downKey)
        return selected + 1;

    if (key == juce::KeyPress::pageUpKey)
        return juce::jmax (0, selected - page);

    if (key == juce::KeyPress::pageDownKey)
        return juce::jmin (last, selected + page);

    if (key == juce::KeyPress::homeKey)
        return 0;

    if (key == juce::KeyPress::endKey)
        return last;

    const auto isShortcut = key.getModifiers().isCtrlDown() || key.getModifiers().isAltDown();
    const auto character = key.getTextCharacter();

    if (! isShortcut && ! rows.isEmpty() && TypedName::takes (character))
        return findTyped (character, rows);

    return {};
}

int PresetTableView::findTyped (juce::juce_wchar character, const juce::Array<int>& rows)
{
    juce::StringArray names;

    for (const auto row : rows)
        names.add (shownPresets.getReference (row).name);

    return typedName.type (character, names, rows.indexOf (table.getSelectedRow()));
}

void PresetTableView::mouseUp (const juce::MouseEvent&)
{
    // A press with the right button, or beside the last column, selects a row without loading it.
    selectCurrentRow (false);
}

//======================================================================================================================
// Drawing

int PresetTableView::getNumRows()
{
    return juce::jmax (1, shownPresets.size());
}

void PresetTableView::paintRowBackground (juce::Graphics& g, int row, int width, int height, bool isSelected)
{
    if (shownPresets.isEmpty())
    {
        g.setColour (findColour (luna::ColourIds::textColourId));
        g.setFont (makeFont());
        g.drawText (nothingFound, 0, 0, width, height, juce::Justification::centred, true);
        return;
    }

    if (isSelected)
        g.fillAll (luna::Contrast::darkenFor (findColour (luna::ColourIds::highlightedTextColourId),
                                              findColour (luna::ColourIds::primaryColourId)));
    else if (isUnderMouse (table.getComponentForRowNumber (row)))
        g.fillAll (findColour (luna::ColourIds::elementColourId));
}

void PresetTableView::paintCell (juce::Graphics& g, int row, int column, int width, int height, bool)
{
    g.setColour (findColour (luna::ColourIds::highlightedTextColourId));
    g.setFont (makeFont());
    g.drawText (getCellText (row, column), textInset, 0, juce::jmax (0, width - 2 * textInset), height,
                juce::Justification::centredLeft, true);
}

juce::String PresetTableView::getCellText (int row, int column) const
{
    if (! juce::isPositiveAndBelow (row, shownPresets.size()))
        return {};

    const auto& preset = shownPresets.getReference (row);

    switch (column)
    {
        case nameColumn: return preset.name;
        case authorColumn: return preset.author;
        case categoriesColumn: return PresetFiles::joinCategories (preset.categories);
        case descriptionColumn: return preset.description.replaceCharacters ("\r\n", "  ");
        default: return {};
    }
}

juce::String PresetTableView::getCellTooltip (int row, int column)
{
    return getCellText (row, column);
}

juce::String PresetTableView::Table::getNameForRow (int row)
{
    return owner.shownPresets.isEmpty() ? nothingFound : owner.getCellText (row, nameColumn);
}

void PresetTableView::resized()
{
    table.setBounds (getLocalBounds());
    updateRowHeight();
}

} // namespace tessarin
