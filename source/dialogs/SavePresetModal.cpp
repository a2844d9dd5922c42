#include "SavePresetModal.h"

#include "common/FontHeights.h"
#include "presets/PresetFiles.h"

#include <algorithm>
#include <utility>

namespace tessarin
{

namespace
{
constexpr auto nameCharacters = "QWERTYUIOPASDFGHJKLZXCVBNM qwertyuiopasdfghjklzxcvbnm1234567890()_";
constexpr auto categoryCharacters = "QWERTYUIOPASDFGHJKLZXCVBNMqwertyuiopasdfghjklzxcvbnm,";

void limitInput (juce::TextEditor& field, int maximumLength, const char* characters)
{
    using Restriction = juce::TextEditor::LengthAndCharacterRestriction;
    field.setInputFilter (new Restriction (maximumLength, characters), true);
}
} // namespace

SavePresetModal::SavePresetModal (PresetManager& presets, const LicenceManager& licence, ToastManager& toasts)
    : ModalWindow ("Save Preset"), presetManager (presets), licenceManager (licence), toastManager (toasts)
{
    // A click on the panel leaves the keyboard with the field that has it.
    setMouseClickGrabsKeyboardFocus (false);
    panel.setMouseClickGrabsKeyboardFocus (false);

    addField (nameField, nameLabel, "Name");
    addField (descriptionField, descriptionLabel, "Description");
    addField (categoriesField, categoriesLabel, "Categories");
    addField (authorField, authorLabel, "Author");

    limitInput (nameField, 40, nameCharacters);
    limitInput (categoriesField, 100, categoryCharacters);
    limitInput (authorField, 100, nameCharacters);

    // A single row shows; there is no room for a bar, and the text follows the caret.
    descriptionField.setMultiLine (true, false);
    descriptionField.setReturnKeyStartsNewLine (true);
    descriptionField.setScrollbarsShown (false);

    for (auto* button : { &cancelButton, &saveButton })
    {
        addAndMakeVisible (*button);
        button->addListener (this);
    }
}

void SavePresetModal::addField (juce::TextEditor& field, juce::Label& label, const juce::String& text)
{
    addAndMakeVisible (label);
    label.setText (text, juce::dontSendNotification);
    label.setFont (juce::FontOptions (luna::FontHeights::control));
    label.setBorderSize ({});
    label.setInterceptsMouseClicks (false, false);

    addAndMakeVisible (field);
    field.setTitle (text);
    field.setFont (juce::FontOptions (luna::FontHeights::control));
    field.setIndents (4, 2);

    // Both keys are the dialog's.
    field.setEscapeAndReturnKeysConsumed (false);
}

void SavePresetModal::visibilityChanged()
{
    if (! isVisible())
        return;

    if (! prepareUserFolder())
    {
        setVisible (false);
        return;
    }

    colourAsDefault (saveButton);
    fillFields();
    restoreDraft();
    cancelButton.toFront (false);
    saveButton.toFront (false);
}

/** False if there is no folder and none can be made. */
bool SavePresetModal::prepareUserFolder()
{
    const auto& folder = presetManager.userFolder;
    const auto path = folder.getFullPathName();

    if (folder.exists())
    {
        if (! folder.hasWriteAccess())
            toastManager.showError ("Unable to write to user preset folder: " + path);

        return true;
    }

    juce::Logger::writeToLog ("Creating user preset folder: " + path);
    const auto result = folder.createDirectory();

    if (result.wasOk())
        return true;

    toastManager.showError ("Unable to create user preset folder: " + result.getErrorMessage());

    const auto presetRoot = folder.getParentDirectory();
    const auto productFolder = presetRoot.getParentDirectory();

    if (! productFolder.hasWriteAccess())
        toastManager.showError ("No permission to write to top-level presets folder: "
                                + productFolder.getFullPathName());

    if (presetRoot.exists() && ! presetRoot.hasWriteAccess())
        toastManager.showError ("No permission to write to exisitng Tessarin preset folder: "
                                + presetRoot.getFullPathName());

    return false;
}

void SavePresetModal::fillFields()
{
    for (auto* field : fields)
        field->clear();

    authorField.setText (licenceManager.getRegisteredName(), false);

    const auto current = presetManager.getCurrentPreset();

    if (current.name == PresetFiles::initialPatchName)
        return;

    nameField.setText (current.name, true);
    categoriesField.setText (current.categories.joinIntoString (","), true);
    descriptionField.setText (current.description, true);

    // Another name is typed over it.
    nameField.selectAll();
}

SavePresetModal::Texts SavePresetModal::getTexts() const
{
    Texts texts;
    std::transform (fields.begin(), fields.end(), texts.begin(),
                    [] (const auto* field) { return field->getText(); });
    return texts;
}

void SavePresetModal::mouseDown (const juce::MouseEvent& event)
{
    const auto texts = getTexts();
    ModalWindow::mouseDown (event);

    if (! isVisible() && texts != filledTexts)
        draft = texts;
}

/** Unless it belongs to another preset. */
void SavePresetModal::restoreDraft()
{
    const auto previouslyFilled = std::exchange (filledTexts, getTexts());
    const auto kept = std::exchange (draft, std::nullopt);

    if (! kept.has_value() || previouslyFilled != filledTexts)
        return;

    for (size_t i = 0; i < fields.size(); ++i)
        fields[i]->setText ((*kept)[i], true);

    nameField.moveCaretToEnd();
}

bool SavePresetModal::keyPressed (const juce::KeyPress& key)
{
    if (key != juce::KeyPress (juce::KeyPress::returnKey))
        return ModalWindow::keyPressed (key);

    save();
    return true;
}

void SavePresetModal::lookAndFeelChanged()
{
    colourAsDefault (saveButton);

    // A text keeps the colour that it was typed in.
    for (auto* field : fields)
        field->applyColourToAllText (field->findColour (juce::TextEditor::textColourId));
}

void SavePresetModal::buttonClicked (juce::Button* button)
{
    if (button == &cancelButton)
        setVisible (false);
    else
        save();
}

void SavePresetModal::save()
{
    presetManager.promptUserToSave (nameField.getText(), descriptionField.getText(),
                                    categoriesField.getText(), authorField.getText());
}

void SavePresetModal::resized()
{
    constexpr auto rowHeight = 20;
    constexpr auto halfWidth = 160;
    constexpr auto buttonWidth = 150;

    placePanel (contentHeight + 180 + 2 * margin);

    const auto x = panelBounds.getX() + margin;
    const auto y = panelBounds.getY() + margin;
    const auto width = panelBounds.getWidth() - 2 * margin;
    const auto right = x + 180;

    nameLabel.setBounds (x, y + 50, width, rowHeight);
    nameField.setBounds (x, y + 70, width, rowHeight);
    descriptionLabel.setBounds (x, y + 100, width, rowHeight);
    descriptionField.setBounds (x, y + 120, width, rowHeight);
    categoriesLabel.setBounds (x, y + 150, halfWidth, rowHeight);
    categoriesField.setBounds (x, y + 170, halfWidth, rowHeight);
    authorLabel.setBounds (right, y + 150, halfWidth, rowHeight);
    authorField.setBounds (right, y + 170, halfWidth, rowHeight);
    cancelButton.setBounds (x, y + 210, buttonWidth, rowHeight);
    saveButton.setBounds (x + width - buttonWidth, y + 210, buttonWidth, rowHeight);
}

} // namespace tessarin
