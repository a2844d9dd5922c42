#include "dialogs/SavePresetModal.h"

#include "editor/OpenEditor.h"
#include "support/FakeProgram.h"
#include "support/ReadOnly.h"

#include <gtest/gtest.h>

namespace
{
using juce::KeyPress;
using juce::String;

struct SavePresetModal : testing::Test
{
    SavePresetModal()
    {
        plugin.setLicence ([] (auto& status) { status.registeredName = "Ann Example"; });
        plugin.takeToasts();
        frame.addChildComponent (modal);
    }

    void show()
    {
        modal.setVisible (true);
        modal.grabKeyboardFocus();
    }

    void type (const String& text)
    {
        for (const auto character : text)
            window.typeKey (KeyPress (static_cast<int> (character), 0, character));
    }

    String texts() const
    {
        return modal.nameField.getText() + "|" + modal.descriptionField.getText() + "|"
               + modal.categoriesField.getText() + "|" + modal.authorField.getText();
    }

    TemporaryConfig config;
    const bool hasFactory = config.preset ("Factory").createDirectory().wasOk();
    PluginUnderTest plugin;
    OrvoAudioProcessor& processor = plugin.processor;
    tessarin::SavePresetModal modal { processor.presetManager, processor.licenceManager,
                                      processor.toastManager };
    juce::Component frame;
    OffscreenWindow window { frame };
    const juce::File userFolder = config.preset ("User");
};
} // namespace

TEST_F (SavePresetModal, FillsInTheCurrentPreset)
{
    show();
    for (auto* field :
         { &modal.nameField, &modal.descriptionField, &modal.categoriesField, &modal.authorField })
        field->setText ("Left over");
    modal.buttonClicked (&modal.cancelButton);
    EXPECT_FALSE (modal.isVisible());
    show();
    EXPECT_EQ (texts(), "|||Ann Example");

    config.addPreset ("User/Loud.tpre",
                      stateText ({}, "author=\"Bob\" categories=\"C, B\" description=\"So\""));
    processor.presetManager.loadPresets();
    processor.presetManager.loadPreset (1);
    modal.setVisible (false);
    show();
    EXPECT_EQ (texts(), "Loud|So|B,C|Ann Example");
    type ("New");
    EXPECT_EQ (modal.nameField.getText(), "New") << "over the name";
}

TEST_F (SavePresetModal, TakesTheCharactersThatBelong)
{
    show();
    modal.authorField.clear();

    for (const auto& [allows, maximumLength] :
         { std::pair { " 09()_azAZ", 40 }, std::pair { " 09()_azAZ,-\"\xc3\xa9", 200 },
           std::pair { "azAZ,", 100 }, std::pair { " 09()_azAZ", 100 } })
    {
        type (String::fromUTF8 (" 09()_azAZ,-\"\xc3\xa9"));
        auto* field = dynamic_cast<juce::TextEditor*> (juce::Component::getCurrentlyFocusedComponent());
        ASSERT_NE (field, nullptr);
        EXPECT_EQ (field->getText(), String::fromUTF8 (allows)) << field->getTitle();
        type (String::repeatedString ("x", maximumLength));
        EXPECT_EQ (field->getText().length(), maximumLength == 200 ? 214 : maximumLength);
        window.typeKey (KeyPress (KeyPress::tabKey));
    }

    EXPECT_TRUE (modal.cancelButton.hasKeyboardFocus (false)) << "in the order of the rows";

    juce::Component below;
    frame.addAndMakeVisible (below);
    below.setBounds (0, 900, 10, 10);
    below.setWantsKeyboardFocus (true);

    for (auto i = 0; i < 2; ++i)
        window.typeKey (KeyPress (KeyPress::tabKey));

    EXPECT_TRUE (modal.nameField.hasKeyboardFocus (true)) << "and round, within the dialog";
}

TEST_F (SavePresetModal, MakesTheUsersFolderOrSaysWhyItCannot)
{
    const auto presets = userFolder.getParentDirectory(), product = presets.getParentDirectory();

    {
        const ReadOnly readOnly { presets, product };
        show();
        EXPECT_FALSE (modal.isVisible());
        const auto found = plugin.takeToasts();
        EXPECT_TRUE (found.startsWith ("ERROR: Unable to create user preset folder: ")) << found;
        EXPECT_TRUE (found.endsWith ("|ERROR: No permission to write to top-level presets folder: "
                                     + product.getFullPathName()
                                     + "|ERROR: No permission to write to exisitng Tessarin preset folder: "
                                     + presets.getFullPathName()))
            << found;
    }

    show();
    EXPECT_TRUE (modal.isVisible() && userFolder.isDirectory());
    EXPECT_TRUE (config.log().contains ("Creating user preset folder: " + userFolder.getFullPathName()));

    const ReadOnly readOnly { userFolder };
    modal.setVisible (false);
    show();
    EXPECT_TRUE (modal.isVisible());
    EXPECT_EQ (plugin.takeToasts(),
               "ERROR: Unable to write to user preset folder: " + userFolder.getFullPathName());
}

TEST_F (SavePresetModal, HandsItsTextsToTheFileDialog)
{
    const auto chosen = userFolder.getChildFile ("Chosen.tpre");
    const FakeProgram fileDialog ("zenity", config.file ("bin"), chosen.getFullPathName());
    const auto workingDirectory = juce::File::getCurrentWorkingDirectory();
    show();
    type ("Typed");
    window.typeKey (KeyPress (KeyPress::tabKey));
    type ("Warm");
    modal.categoriesField.setText ("Bass");
    modal.nameField.grabKeyboardFocus();
    window.typeKey (KeyPress (KeyPress::returnKey));

    EXPECT_EQ (fileDialog.readLastArgument(), "--version");
    EXPECT_EQ (fileDialog.readLastArgument(), "--filename=Typed.tpre");
    EXPECT_TRUE (modal.isVisible()) << "until somebody hides it";
    EXPECT_EQ (juce::File::getCurrentWorkingDirectory(), workingDirectory) << "the host's own";

    dispatchUntil ([this] { return ! processor.toastManager.toasts.isEmpty(); });
    const auto preset = processor.presetManager.getCurrentPreset();
    EXPECT_EQ (preset.name + preset.description + preset.categories[0] + preset.author,
               "ChosenWarmBassAnn Example");

    modal.nameField.clear();
    modal.buttonClicked (&modal.saveButton);
    EXPECT_EQ (fileDialog.readLastArgument(), "--version");
    EXPECT_EQ (fileDialog.readLastArgument(), "--filename=User") << "the folder itself, without a name";
}

TEST (SaveDialog, KeepsWhatWasTypedWhenAClickBesideItClosesIt)
{
    OpenEditor open;
    auto& modal = open.editor->savePresetModal;
    const auto type = [&] (char letter)
    { open.window->typeKey (KeyPress (letter, 0, static_cast<juce::juce_wchar> (letter))); };
    const auto close = [&] (bool byClick)
    {
        byClick ? open.window->clickMouse (modal, { 5, 5 })
                : open.window->typeKey (KeyPress (KeyPress::escapeKey));
        EXPECT_FALSE (modal.isVisible());
    };
    const auto reopen = [&]
    {
        open.window->clickMouse (open.editor->topBar.saveButton, { 5, 5 });
        return modal.nameField.getText() + "|" + modal.categoriesField.getText();
    };

    open.window->clickMouse (open.editor->topBar.saveButton, { 5, 5 });
    type ('A');
    modal.categoriesField.setText ("Bass");
    close (true);
    EXPECT_EQ (reopen(), "A|Bass");
    type ('b');
    close (true);
    EXPECT_EQ (reopen(), "Ab|Bass") << "and goes on";
    close (false);
    EXPECT_EQ (reopen(), "|") << "given up";
    type ('A');
    close (true);
    open.plugin.processor.presetManager.loadPreset (1);
    EXPECT_EQ (reopen(), "Loud|") << "of another preset";
}

TEST (SaveDialog, IsReplacedByASecondAndOutlivesTheWindow)
{
    OpenEditor open;
    auto& manager = open.plugin.processor.presetManager;
    auto& toasts = open.plugin.processor.toastManager.toasts;
    const auto user = open.config.preset ("User");
    user.createDirectory();

    // The user takes the folder and name that the dialog offers: the quotes end and begin around the shell's variables.
    const FakeProgram fileDialog ("zenity", open.config.file ("bin"), "'\"$PWD/${last#--filename=}\"'");
    manager.promptUserToSave ("First", {}, {}, {});
    manager.promptUserToSave ("~root", {}, {}, {});
    open.close();
    toasts.clear();

    dispatchUntil ([&] { return ! toasts.isEmpty(); });
    ASSERT_FALSE (toasts.isEmpty());
    EXPECT_EQ (toasts[0]->text, "Preset saved");
    EXPECT_EQ (user.getNumberOfChildFiles (juce::File::findFiles), 1) << "the first dialog is gone";
    open.open();
    EXPECT_EQ (open.editor->topBar.presetBox.getText(), "~root");
}
