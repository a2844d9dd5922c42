#pragma once

#include "settings/FileListener.h"
#include "settings/SettingsFile.h"
#include "widgets/ModalWindow.h"
#include "widgets/ToastManager.h"

namespace tessarin
{

/** The dialog that changes the settings. It follows the settings file, shown or not, so that what another
    instance saves is in force here within a second. Message thread. */
class SettingsModal final : public ModalWindow,
                            public juce::Button::Listener,
                            public juce::ChangeBroadcaster,
                            public juce::ComboBox::Listener,
                            public juce::ChangeListener
{
public:
    /** Both outlive the dialog. */
    SettingsModal (SettingsFile&, ToastManager&);
    ~SettingsModal() override;

    void resized() override;
    void visibilityChanged() override;

    /** Hands the keyboard to the first control. */
    void focusGained (FocusChangeType) override { scaleBox.grabKeyboardFocus(); }

    void buttonClicked (juce::Button*) override;
    void comboBoxChanged (juce::ComboBox*) override;

    /** The settings file changed. */
    void changeListenerCallback (juce::ChangeBroadcaster*) override;

    /** Not in use: failures go to the log alone. */
    ToastManager& toastManager;
    SettingsFile& properties;
    juce::Label versionLabel;
    juce::ComboBox scaleBox;
    juce::Label scaleLabel;

    /** Complete, but not a child: a theme is chosen in the top bar. */
    juce::ComboBox themeBox;
    juce::Label themeLabel;

    juce::TextButton logButton { "Show Log File" };
    const juce::StringArray themeNames { "Default", "Light" };
    FileListener fileListener;

private:
    void addChildren();
    void fillBoxes();
    void showSettings();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SettingsModal)
};

} // namespace tessarin
