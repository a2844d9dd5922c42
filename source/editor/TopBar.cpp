#include "TopBar.h"

#include "common/BundleFolder.h"
#include "common/ColourIds.h"
#include "common/ConfigFolder.h"
#include "common/FontHeights.h"
#include "common/ParameterIds.h"
#include "core/TessarinProcessor.h"
#include "look/ThemeResolver.h"
#include "presets/PresetFiles.h"
#include "settings/Settings.h"

#include <LunaBinary.h>

namespace tessarin
{

namespace
{
constexpr auto updatePageBase = "https://tessarin.example/updates/";

/** The menu of a folder's presets and folders; the items' identifiers are the list's indices plus 1. The current
    preset's item loads it again, which the box would take for no choice; the folders around it are ticked, as it
    is. */
juce::PopupMenu makeMenu (const juce::ValueTree& folder, int currentIndex,
                          const std::function<void()>& loadAgain, bool& holdsCurrent)
{
    juce::PopupMenu menu;

    for (const auto& child : folder)
    {
        if (! child.hasType (PresetFiles::presetType))
        {
            auto isInside = false;
            auto subMenu = makeMenu (child, currentIndex, loadAgain, isInside);
            menu.addSubMenu (child[PresetFiles::folderName].toString(), std::move (subMenu), true, nullptr,
                             isInside);
            holdsCurrent = holdsCurrent || isInside;
            continue;
        }

        const int index = child[PresetFiles::presetIndex];
        juce::PopupMenu::Item item (child[PresetFiles::name].toString());
        item.itemID = index + 1;

        if (index == currentIndex)
        {
            item.action = loadAgain;
            holdsCurrent = true;
        }

        menu.addItem (std::move (item));
    }

    return menu;
}
} // namespace

TopBar::TopBar (TessarinProcessor& owner, Slots slotsToUse)
    : juce::Thread ("updatechecker"),
      presetBrowserButton (LunaBinary::tablelist_svg, LunaBinary::tablelist_svgSize),
      previousButton (LunaBinary::angleleft_svg, LunaBinary::angleleft_svgSize),
      nextButton (LunaBinary::angleright_svg, LunaBinary::angleright_svgSize),
      saveButton (LunaBinary::save_svg, LunaBinary::save_svgSize),
      licenceButton (LunaBinary::lockopen_svg, LunaBinary::lockopen_svgSize),
      manualButton (LunaBinary::question_svg, LunaBinary::question_svgSize),
      updateButton (LunaBinary::syncalt_svg, LunaBinary::syncalt_svgSize),
      settingsButton (LunaBinary::cog_svg, LunaBinary::cog_svgSize),
      bypassButton (LunaBinary::poweroff_svg, LunaBinary::poweroff_svgSize),
      processor (owner),
      slots (std::move (slotsToUse)),
      presetComparison (owner.presetManager, owner.parameters)
{
    addChildren();
    lookAndFeelChanged();
    showLicenceButton();

    bypassAttachment = std::make_unique<juce::AudioProcessorValueTreeState::ButtonAttachment> (
        processor.parameters, ParameterIds::enable, bypassButton);

    processor.licenceManager.addChangeListener (this);
    addChangeListener (this);
    processor.presetManager.addListener (this);
    refreshPresetDisplay();
    nameLabel.setText (processor.getName(), juce::dontSendNotification);
}

TopBar::~TopBar()
{
    stopTimer();
    signalThreadShouldExit();
    waitForThreadToExit (-1);

    processor.presetManager.removeListener (this);
    removeChangeListener (this);
    processor.licenceManager.removeChangeListener (this);
}

void TopBar::addChildren()
{
    addAndMakeVisible (background);

    // What is clicked beside the buttons is the bar.
    for (auto* transparent : std::initializer_list<juce::Component*> { &background, &nameLabel })
        transparent->setInterceptsMouseClicks (false, false);

    addAndMakeVisible (nameLabel);
    nameLabel.setFont (juce::FontOptions (luna::FontHeights::topBar));
    nameLabel.setJustificationType (juce::Justification::centredLeft);
    nameLabel.setBorderSize ({});

    addAndMakeVisible (presetBox);
    presetBox.setTextWhenNothingSelected ("Select a preset");
    presetBox.addItem (PresetFiles::initialPatchName, 1);
    presetBox.setSelectedId (1, juce::dontSendNotification);
    presetBox.addListener (this);

    const auto addButton = [this] (luna::IconButton& button, const juce::String& tooltip)
    {
        addAndMakeVisible (button);
        button.setTooltip (tooltip);
        button.setTitle (tooltip);
        button.addListener (this);
    };

    addButton (presetBrowserButton, "Open the preset browser");
    addButton (previousButton, "Previous preset");
    addButton (nextButton, "Next preset");
    addButton (saveButton, "Save the current state as a preset");
    addButton (licenceButton, "Show licence details");
    addButton (manualButton, "Open the user manual");
    addButton (updateButton, "Check for updates");
    addButton (settingsButton, "Open the plugin settings");
    addButton (bypassButton, "Bypass the processing");

    // The attachment's alone.
    bypassButton.removeListener (this);
    bypassButton.setClickingTogglesState (true);
    updateButton.setEnabled (false);
}

//======================================================================================================================
// Presets

void TopBar::rebuildPresetMenu()
{
    const auto& manager = processor.presetManager;
    const auto current = manager.getCurrentPreset().index;
    const std::function<void()> loadAgain = [bar = juce::Component::SafePointer<TopBar> (this)]
    {
        if (bar != nullptr)
            bar->comboBoxChanged (&bar->presetBox);
    };
    const auto makeFolder = [&] (const char* type, bool& holdsCurrent)
    { return makeMenu (manager.getPresetTree().getChildWithName (type), current, loadAgain, holdsCurrent); };

    auto isFactory = false, isUser = false;
    auto menu = makeFolder ("f_factory", isFactory);
    auto user = makeFolder ("f_user", isUser);
    menu.addSeparator();
    menu.addSubMenu ("User", std::move (user), true, nullptr, isUser);
    *presetBox.getRootMenu() = std::move (menu);
}

void TopBar::refreshPresetDisplay()
{
    const auto& manager = processor.presetManager;
    const auto index = manager.getCurrentPreset().index;

    previousButton.setEnabled (index > 0);
    nextButton.setEnabled (index < manager.getNumPresets() - 1);
    rebuildPresetMenu();
    presetBox.setSelectedId (index + 1, juce::dontSendNotification);

    presetComparison.readPreset();
    showPresetChange();
}

void TopBar::showPresetChange()
{
    presetBox.setChanged (presetComparison.isChanged());
}

void TopBar::comboBoxChanged (juce::ComboBox*)
{
    processor.presetManager.loadPreset (presetBox.getSelectedId() - 1);
    refreshPresetDisplay();
}

void TopBar::step (int difference)
{
    processor.presetManager.loadPreset (processor.presetManager.getCurrentPreset().index + difference);
    refreshPresetDisplay();
}

//======================================================================================================================
// Buttons

void TopBar::buttonClicked (juce::Button* button)
{
    const auto leavesBrowserOpen =
        button == &presetBrowserButton || button == &nextButton || button == &previousButton;

    if (! leavesBrowserOpen && slots.isBrowserVisible())
        closePresetBrowser();

    if (button == &saveButton)
        openSaveDialog();
    else if (button == &presetBrowserButton)
        togglePresetBrowser();
    else if (button == &nextButton)
        step (1);
    else if (button == &previousButton)
        step (-1);
    else if (button == &licenceButton)
        slots.openLicenceDialog();
    else if (button == &settingsButton)
        slots.openSettings();
    else if (button == &manualButton)
        openManual();
    else if (button == &updateButton)
        openUpdatePage();
}

void TopBar::closePresetBrowser()
{
    slots.setBrowserVisible (false);
    presetBrowserButton.setToggleState (slots.isBrowserVisible(), juce::dontSendNotification);
}

void TopBar::togglePresetBrowser()
{
    slots.setBrowserVisible (! slots.isBrowserVisible());
    presetBrowserButton.setToggleState (slots.isBrowserVisible(), juce::dontSendNotification);
}

void TopBar::openSaveDialog()
{
    if (processor.licenceManager.isSavingRefused())
        processor.toastManager.showToast (processor.licenceManager.getSaveRefusal(), toastNotice, true);
    else
        slots.openSaveDialog();

    refreshPresetDisplay();
}

void TopBar::openManual()
{
    const auto name = processor.getName() + " Manual " + JucePlugin_VersionString + ".pdf";
    const auto manual = getConfigFolder().getChildFile (name);

    for (const auto& file : { manual, getBundleResource (name) })
    {
        if (file.existsAsFile())
        {
            file.startAsProcess();
            return;
        }
    }

    processor.toastManager.showError ("Sorry, we can't find the manual. Please reinstall the plugin.");
    processor.toastManager.showToast (manual.getFullPathName(), toastNotice, true);
}

void TopBar::openUpdatePage()
{
    const auto product = processor.getName().upToFirstOccurrenceOf (" ", false, false);
    const auto address = updatePageBase + product + "?pluginversion=" + JucePlugin_VersionString;
    juce::URL (address.toLowerCase()).launchInDefaultBrowser();
}

void TopBar::showLicenceButton()
{
    licenceButton.setVisible (processor.licenceManager.isLicenceButtonVisible());
    resized();
}

void TopBar::timerCallback()
{
    stopTimer();
    startThread();
}

void TopBar::changeListenerCallback (juce::ChangeBroadcaster* source)
{
    if (source == this)
        updateButton.setEnabled (updateAvailable);
    else if (source == &processor.licenceManager)
        showLicenceButton();
    else
        refreshPresetDisplay();
}

//======================================================================================================================
// The bar itself

void TopBar::mouseDown (const juce::MouseEvent& event)
{
    constexpr auto clicksNeeded = 10;

    if (++nameClickCount < clicksNeeded && ! event.mods.isShiftDown())
        return;

    nameClickCount = 0;
    showNextTheme();
}

void TopBar::showNextTheme()
{
    const auto& cycle = ThemeResolver::getEmbeddedThemeNames();

    // An unknown name has the index -1, so that it goes to the first, as the last one does.
    auto& settings = processor.settings;
    const auto current = cycle.indexOf (settings.getValue (Settings::themeKey, Settings::defaultTheme));
    settings.setValue (Settings::themeKey, cycle[(current + 1) % cycle.size()]);
    settings.saveOrLog();
    slots.loadTheme();
}

void TopBar::lookAndFeelChanged()
{
    using luna::ColourIds::pluginNameColourId;

    const auto& look = getLookAndFeel();
    const auto isKnown = look.isColourSpecified (pluginNameColourId);
    nameLabel.setColour (juce::Label::textColourId,
                         isKnown ? look.findColour (pluginNameColourId) : juce::Colours::white);
}

void TopBar::resized()
{
    constexpr auto itemHeight = 20.0f;
    constexpr auto buttonWidth = 25.0f;
    constexpr auto widestNarrowBar = 699;

    background.setBounds (getLocalBounds());
    nameLabel.setBounds (20, 0, 136, getHeight());

    juce::FlexBox row;
    row.justifyContent = juce::FlexBox::JustifyContent::center;
    row.alignItems = juce::FlexBox::AlignItems::center;

    const auto add = [&row] (juce::Component& item, float width, float rightMargin, float leftMargin = 0.0f)
    {
        row.items.add (
            juce::FlexItem (width, itemHeight, item).withMargin ({ 0.0f, rightMargin, 0.0f, leftMargin }));
    };

    const auto hasLicenceButton = licenceButton.isVisible();

    add (presetBrowserButton, buttonWidth, 5.0f);
    add (presetBox, getWidth() > widestNarrowBar ? 183.0f : 150.0f, 11.0f);
    add (previousButton, buttonWidth, 1.0f);
    add (nextButton, buttonWidth, 1.0f);
    add (saveButton, buttonWidth, 12.0f);
    add (manualButton, buttonWidth, 1.0f);
    add (updateButton, buttonWidth, 1.0f);

    if (hasLicenceButton)
        add (licenceButton, buttonWidth, 12.0f);

    add (settingsButton, buttonWidth, 0.0f, hasLicenceButton ? 0.0f : 11.0f);
    row.performLayout (getLocalBounds());

    bypassButton.setBounds (getWidth() - 40, nextButton.getY(), 25, 20);
}

} // namespace tessarin
