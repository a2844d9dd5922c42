#include "PresetBrowser.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "presets/PresetFiles.h"

#include <array>
#include <set>

namespace tessarin
{

namespace
{
constexpr auto border = 5;
constexpr auto narrowWidth = 700;
constexpr auto stripRowHeight = CategoryStrip::rowHeight;
constexpr auto filterLabelWidth = 105;
constexpr auto gapInGroup = 5;
constexpr auto gapBetweenGroups = 10;

using IndicesByPath = juce::HashMap<juce::String, int>;

/** Gives the presets of a tree the list indices of another scan; -1 for those that are gone. */
void renumber (juce::ValueTree folder, const IndicesByPath& indices)
{
    for (auto child : folder)
    {
        if (! child.hasType (PresetFiles::presetType))
        {
            renumber (child, indices);
            continue;
        }

        const auto path = child[PresetFiles::path].toString();
        child.setProperty (PresetFiles::presetIndex, indices.contains (path) ? indices[path] : -1, nullptr);
    }
}
} // namespace

PresetBrowser::PresetBrowser (PresetManager& manager) : presetManager (manager)
{
    setTitle ("Preset browser");

    // The tab key stays within the browser: what it covers takes no clicks either.
    setFocusContainerType (FocusContainerType::keyboardFocusContainer);
    setWantsKeyboardFocus (true);

    // Tree and table keep their shares when the window grows; a dragged bar changes them.
    layout.setItemLayout (0, 100, -0.6, 220);
    layout.setItemLayout (1, border, border, border);
    layout.setItemLayout (2, 150, -1.0, -1.0);

    addChildren();
    connect();
    presetManager.addListener (this);
}

PresetBrowser::~PresetBrowser()
{
    presetManager.removeListener (this);
}

void PresetBrowser::addChildren()
{
    for (auto* child :
         std::initializer_list<juce::Component*> { &tree, &table, &display, &filterLabel, &randomButton,
                                                   &modeToggle, &matchToggle, &categories, &resizerBar })
        addAndMakeVisible (child);

    auto order = 0;

    for (auto* stop : std::initializer_list<juce::Component*> { &tree, &table, &modeToggle, &matchToggle,
                                                                &categories, &randomButton })
        stop->setExplicitFocusOrder (++order);

    modeToggle.setTitle ("Filter mode");
    matchToggle.setTitle ("Filter match");
    filterLabel.setFont (juce::FontOptions (luna::FontHeights::control));
    filterLabel.setBorderSize ({});
    randomButton.setMouseClickGrabsKeyboardFocus (false);

    randomButton.setTooltip ("Random Preset: Select a random preset from the list");
    modeToggle.left.setTooltip ("Show: Show any presets which match the filter");
    modeToggle.right.setTooltip ("Hide: Hide any presets which match the filter");
    matchToggle.left.setTooltip ("All: Presets must match all categories");
    matchToggle.right.setTooltip ("Any: Presets can match any category");
}

void PresetBrowser::connect()
{
    tree.onFolderSelected = [this] (const juce::ValueTree& folder) { table.setTree (folder); };
    table.onPresetClicked = [this] (int index) { loadPreset (index); };
    table.getCurrentIndex = [this] { return presetManager.getCurrentPreset().index; };
    categories.onChange = modeToggle.onChange = matchToggle.onChange = [this] { applyFilter(); };
    randomButton.onClick = [this] { loadRandomPreset(); };
}

//======================================================================================================================
// Presets

void PresetBrowser::visibilityChanged()
{
    if (! isVisible())
        return;

    tree.setTree (presetManager.getPresetTree().createCopy());
    showCategories();
    applyFilter();
    showPreset (presetManager.getCurrentPreset());
}

void PresetBrowser::showCategories()
{
    std::set<juce::String> found;

    for (const auto& preset : presetManager.getPresets())
        found.insert (preset.categories.begin(), preset.categories.end());

    found.erase (juce::String());

    juce::StringArray all;

    for (const auto& category : found)
        all.add (category);

    all.sortNatural();
    categories.setCategories (all);

    for (auto* part :
         std::initializer_list<juce::Component*> { &filterLabel, &modeToggle, &matchToggle, &categories })
        part->setVisible (! all.isEmpty());

    resized();
}

void PresetBrowser::applyFilter()
{
    table.setFilter (categories.getSelection(), modeToggle.isLeftSelected(), matchToggle.isLeftSelected());
}

void PresetBrowser::loadPreset (int index)
{
    presetManager.loadPreset (index);

    // One that cannot be read is current all the same, and no listener is told. The keys go on from its row.
    table.selectCurrentRow();
}

void PresetBrowser::loadRandomPreset()
{
    juce::Array<int> indices;

    for (const auto& preset : table.shownPresets)
        if (preset.index >= 0)
            indices.add (preset.index);

    if (! indices.isEmpty())
        loadPreset (indices[juce::Random::getSystemRandom().nextInt (indices.size())]);
}

void PresetBrowser::showPreset (const Preset& preset)
{
    display.setPreset (preset);
    table.selectCurrentRow();
}

void PresetBrowser::presetLoaded (Preset preset)
{
    // A hidden browser reads everything when it is shown.
    if (isVisible())
        showPreset (preset);
}

void PresetBrowser::presetSaved (Preset preset)
{
    if (! isVisible())
        return;

    // The rescan has moved the list's indices. The rows stay as they are, and load what they show.
    IndicesByPath indices;

    for (const auto& listed : presetManager.getPresets())
        indices.set (listed.path, listed.index);

    renumber (tree.getTree(), indices);
    table.setTree (tree.getChosenFolder());
    showPreset (preset);
}

//======================================================================================================================
// Appearance

bool PresetBrowser::keyPressed (const juce::KeyPress& key)
{
    if (key != juce::KeyPress::escapeKey)
        return false;

    if (onCloseRequest)
        onCloseRequest();

    return true;
}

void PresetBrowser::lookAndFeelChanged()
{
    filterLabel.setColour (juce::Label::textColourId, findColour (luna::ColourIds::highlightedTextColourId));
}

void PresetBrowser::paint (juce::Graphics& g)
{
    g.fillAll (findColour (luna::ColourIds::panelColourId));
    g.setColour (findColour (luna::ColourIds::backgroundColourId));
    g.fillRect (getStripArea());
}

/** Along the bottom, over the whole width. */
juce::Rectangle<int> PresetBrowser::getStripArea()
{
    const auto height = categories.isVisible() ? categories.getHeight() : stripRowHeight;
    return getLocalBounds().removeFromBottom (height + 2 * border);
}

void PresetBrowser::layOutStrip()
{
    const auto randomWidth = getWidth() < narrowWidth ? 130 : 180;
    randomButton.setBounds (border, getHeight() - border - stripRowHeight, randomWidth, stripRowHeight);

    auto x = border + filterLabelWidth;
    const auto modeWidth = modeToggle.getIdealWidth();
    const auto matchWidth = matchToggle.getIdealWidth();
    const auto badgesX = x + modeWidth + gapBetweenGroups + matchWidth + 2 * gapBetweenGroups;
    const auto badgesWidth = juce::jmax (0, getWidth() - border - badgesX);
    const auto height = categories.getIdealHeight (badgesWidth);
    const auto y = getHeight() - border - height;

    filterLabel.setBounds (border, y, filterLabelWidth - gapInGroup, stripRowHeight);
    modeToggle.setBounds (x, y, modeWidth, stripRowHeight);
    matchToggle.setBounds (x + modeWidth + gapBetweenGroups, y, matchWidth, stripRowHeight);
    categories.setBounds (badgesX, y, badgesWidth, height);
}

void PresetBrowser::resized()
{
    layOutStrip();

    auto area = getLocalBounds().withBottom (getStripArea().getY()).reduced (border);
    display.setBounds (area.removeFromRight (getWidth() < narrowWidth ? 150 : 200));
    area.removeFromRight (border);

    std::array<juce::Component*, 3> stretched { &tree, &resizerBar, &table };
    layout.layOutComponents (stretched.data(), static_cast<int> (stretched.size()), area.getX(), area.getY(),
                             area.getWidth(), area.getHeight(), false, true);

    // The layout's shares are rounded.
    table.setBounds (table.getBounds().withRight (area.getRight()));
}

} // namespace tessarin
