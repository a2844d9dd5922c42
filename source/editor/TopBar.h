#pragma once

#include "editor/PresetBox.h"
#include "presets/PresetComparison.h"
#include "presets/PresetManager.h"
#include "widgets/IconButton.h"
#include "widgets/Panel.h"

#include <functional>

namespace tessarin
{

class TessarinProcessor;

/** The strip along the top of the editor: product's name, preset box with its stepping buttons, and what opens
    browser, dialogs and manual. It shows the preset manager's state and has none of its own. As a change listener it
    takes news of the licence, of itself, and from whoever else has changed a preset.

    Ten clicks on the bar beside its buttons, or one with shift held, change to the next theme. The check for
    updates is prepared and not in use: nothing starts the timer or sets `updateAvailable`. Message thread, but
    for `run`.
*/
class TopBar final : public juce::Component,
                     public juce::Button::Listener,
                     public juce::ComboBox::Listener,
                     public juce::ChangeListener,
                     public PresetManager::Listener,
                     public juce::Thread,
                     public juce::ChangeBroadcaster,
                     public juce::Timer
{
public:
    /** What the bar makes the window do, when it is clicked. */
    struct Slots
    {
        std::function<void()> openSaveDialog, openLicenceDialog, openSettings;
        std::function<bool()> isBrowserVisible;
        std::function<void (bool)> setBrowserVisible;

        /** From the settings, where another one now stands. */
        std::function<void()> loadTheme;
    };

    /** The processor outlives the bar; what the slots reach need not be made yet. */
    TopBar (TessarinProcessor&, Slots);
    ~TopBar() override;

    /** Takes the list and the current preset from the preset manager. */
    void refreshPresetDisplay();

    /** Looks whether the parameters differ from the preset. */
    void showPresetChange();

    void closePresetBrowser();

    void buttonClicked (juce::Button*) override;
    void comboBoxChanged (juce::ComboBox*) override;
    void changeListenerCallback (juce::ChangeBroadcaster* source) override;

    void presetSaved (Preset) override { refreshPresetDisplay(); }

    void presetLoaded (Preset) override { refreshPresetDisplay(); }

    void presetRestored (Preset) override { refreshPresetDisplay(); }

    void run() override {}

    void timerCallback() override;

    void mouseDown (const juce::MouseEvent&) override;
    void lookAndFeelChanged() override;
    void resized() override;

    luna::IconButton presetBrowserButton;
    PresetBox presetBox;
    luna::IconButton previousButton;
    luna::IconButton nextButton;
    luna::IconButton saveButton;
    luna::IconButton licenceButton;
    luna::IconButton manualButton;
    luna::IconButton updateButton;
    luna::IconButton settingsButton;
    luna::IconButton bypassButton;
    juce::Label nameLabel;
    luna::Panel background;

private:
    void addChildren();
    void rebuildPresetMenu();
    void togglePresetBrowser();
    void step (int difference);
    void openSaveDialog();
    void openManual();
    void openUpdatePage();
    void showNextTheme();
    void showLicenceButton();

    TessarinProcessor& processor;
    const Slots slots;
    PresetComparison presetComparison;
    std::unique_ptr<juce::AudioProcessorValueTreeState::ButtonAttachment> bypassAttachment;
    bool updateAvailable = false;

    /** Since the last change of theme. */
    int nameClickCount = 0;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (TopBar)
};

} // namespace tessarin
