#pragma once

#include "core/LicenceManager.h"
#include "presets/PresetManager.h"
#include "widgets/ModalWindow.h"
#include "widgets/ToastManager.h"

#include <array>
#include <optional>

namespace tessarin
{

/** The dialog that asks for a preset's name, description, categories and author, and hands them on to the
    preset manager's file dialog. It stays open meanwhile; whoever listens to the manager hides it after a
    save. Message thread. */
class SavePresetModal final : public ModalWindow,
                              public juce::Button::Listener,
                              public juce::ChangeBroadcaster
{
public:
    /** All outlive the dialog. */
    SavePresetModal (PresetManager&, const LicenceManager&, ToastManager&);

    void resized() override;

    /** A click beside the panel closes the dialog, and what had been typed comes back when it opens again. */
    void mouseDown (const juce::MouseEvent&) override;

    /** When shown: makes the user's folder and fills in the fields. Hides itself again, with a toast, if there
        can be no folder. */
    void visibilityChanged() override;

    /** Hands the keyboard to the first field. */
    void focusGained (FocusChangeType) override { nameField.grabKeyboardFocus(); }

    /** Return saves. */
    bool keyPressed (const juce::KeyPress&) override;

    void lookAndFeelChanged() override;
    void buttonClicked (juce::Button*) override;

    juce::TextEditor nameField;
    juce::TextEditor descriptionField;
    juce::TextEditor categoriesField;
    juce::TextEditor authorField;
    juce::TextButton cancelButton { "Cancel" };
    juce::TextButton saveButton { "Save" };

private:
    using Texts = std::array<juce::String, 4>;

    void addField (juce::TextEditor&, juce::Label&, const juce::String& text);
    bool prepareUserFolder();
    void fillFields();
    void restoreDraft();
    void save();
    [[nodiscard]] Texts getTexts() const;

    PresetManager& presetManager;
    const LicenceManager& licenceManager;
    ToastManager& toastManager;
    juce::Label nameLabel, descriptionLabel, categoriesLabel, authorLabel;
    const std::array<juce::TextEditor*, 4> fields { &nameField, &descriptionField, &categoriesField,
                                                    &authorField };

    /** As the fields were filled, and what a click beside the panel has closed them with. */
    Texts filledTexts;
    std::optional<Texts> draft;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SavePresetModal)
};

} // namespace tessarin
