#include "common/ColourIds.h"
#include "editor/OpenEditor.h"
#include "support/FakeProgram.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

using juce::Colour;
using juce::Justification;
using juce::Rectangle;

namespace
{
// Of the theme "Default".
const Colour primary (0xff3470b7), warning (0xffe0624c), panel (0xff32363a), text (0xffb5b5b5);
} // namespace

TEST (Overlays, DrawLogAndDismissToastsByTheirType)
{
    using namespace tessarin;
    OpenEditor open;
    auto& toasts = open.plugin.processor.toastManager;
    open.plugin.processor.logger.getTime = [] { return juce::Time (2026, 1, 1, 12, 0, 0, 0, true); };
    juce::String lines;
    const auto before = open.window->render();
    const juce::Font font (juce::FontOptions (16.0f));

    const std::tuple<ToastType, bool, const char*, Colour> cases[] {
        { toastError, true, "ERROR: It failed", warning },
        { toastSuccess, true, "It failed", primary },
        { toastNotice, true, "It failed", panel },
        { toastFatal, false, "ERROR: It failed", warning }
    };

    for (const auto& [type, isDismissible, shown, colour] : cases)
    {
        toasts.showToast ("It failed", type, isDismissible);
        lines << "01/02/2026 12:00:00 " << shown << "\r\n";
    }

    EXPECT_TRUE (open.config.log().endsWith (lines));
    const auto image = open.window->render();
    EXPECT_TRUE (pixels::areNear (image.getPixelAt (3, 700),
                                  before.getPixelAt (3, 700).overlaidWith (Colour (0xcc000000)), 1));

    for (auto i = 0; i < 4; ++i)
    {
        const auto& [type, isDismissible, shown, colour] = cases[i];
        const Rectangle<int> bounds (10, 20 + 60 * i, 1048, 50);
        EXPECT_TRUE (pixels::showsText (image, bounds.reduced (5).withTrimmedRight (70), shown,
                                        bounds.reduced (5), font, juce::Colours::white, colour,
                                        Justification::centredLeft))
            << i;
        const auto end = bounds.withLeft (bounds.getRight() - 70).withWidth (60);
        EXPECT_EQ (isDismissible,
                   pixels::showsText (image, end, "DISMISS", end, font, juce::Colours::white, colour))
            << i;
        EXPECT_NE (image.getPixelAt (10, bounds.getY()), colour) << "the corner is round";
    }

    const auto click = [&] (int toast, int fromRight)
    {
        open.window->clickMouse (*toasts.toasts[toast], { toasts.getWidth() - 20 - fromRight, 10 });
        dispatchMessages();
        return toasts.toasts.size();
    };

    // Those below move up.
    EXPECT_EQ (click (3, 1), 4);
    EXPECT_EQ (click (0, 70), 4);
    EXPECT_EQ (click (0, 69), 3);
    EXPECT_EQ (click (1, 1), 2);
    EXPECT_EQ (toasts.toasts[0]->type, toastSuccess);
    EXPECT_EQ (toasts.toasts[1]->getBounds(), Rectangle<int> (10, 80, 1048, 50));
    toasts.toasts.clear();
    toasts.showError ("The last");
    EXPECT_TRUE (toasts.isVisible());
    EXPECT_EQ (click (0, 1), 0);
    EXPECT_FALSE (toasts.isVisible());

    toasts.showError ("In a wider window");
    open.editor->setSize (1200, 900);
    EXPECT_EQ (toasts.toasts[0]->getBounds(), Rectangle<int> (10, 20, 1180, 50));
}

TEST (Overlays, HoldTheKeyboardAndGiveItBack)
{
    using juce::KeyPress;
    OpenEditor open;
    auto& e = *open.editor;
    auto& knob = e.singleEditor.makeupSlider.slider;
    auto& toasts = open.plugin.processor.toastManager;
    const auto focused = [] { return juce::Component::getCurrentlyFocusedComponent(); };
    const auto press = [&] (int key)
    {
        const auto isUsed = open.window->getPeer()->handleKeyPress (KeyPress (key));
        dispatchMessages();
        return isUsed;
    };
    const auto expectInside = [&] (juce::Component& overlay)
    {
        // Each key may come before any message.
        for (auto i = 0; i < 8; ++i, open.window->typeKey (KeyPress (KeyPress::tabKey)))
            EXPECT_TRUE (focused() == &overlay || overlay.isParentOf (focused())) << overlay.getTitle() << i;

        dispatchMessages();
    };

    const auto clickOn = [&] (juce::Component* button) -> std::function<void()>
    {
        const auto click = [&open, button] { open.window->clickMouse (*button, { 5, 5 }); };
        return click;
    };
    const std::vector<std::pair<juce::Component*, std::function<void()>>> overlays {
        { &e.settingsModal, clickOn (&e.topBar.settingsButton) },
        { &e.savePresetModal, clickOn (&e.topBar.saveButton) },
        { &e.presetBrowser, clickOn (&e.topBar.presetBrowserButton) },
        { &e.licenceDialog, [&] { e.topBar.buttonClicked (&e.topBar.licenceButton); } },
        { &toasts, [&] { toasts.showToast ("Note", tessarin::toastNotice, true); } },
    };

    for (const auto& [overlay, show] : overlays)
    {
        knob.grabKeyboardFocus();
        show();
        expectInside (*overlay);

        // A message over it, and out of the way again.
        if (overlay != &toasts)
        {
            const juce::Component::SafePointer<juce::Component> inside = focused();
            toasts.showError ("Wrong");
            expectInside (toasts);
            EXPECT_TRUE (press (KeyPress::returnKey));
            EXPECT_EQ (focused(), inside.getComponent()) << overlay->getTitle();
        }

        // Nor does what comes later and in the background.
        knob.grabKeyboardFocus();
        dispatchMessages();
        expectInside (*overlay);
        EXPECT_TRUE (press (KeyPress::escapeKey));
        EXPECT_FALSE (overlay->isVisible());
        EXPECT_EQ (focused(), &knob) << overlay->getTitle();
    }

    // That of licensing stays until licensing takes it away. The space bar opens the dialog, as a click does.
    const auto setOverlay = [&] (const char* shown)
    {
        open.plugin.setLicence ([&] (auto& status) { status.overlayText = shown; });
        dispatchMessages();
    };
    setOverlay ("Expired");
    expectInside (e.licenceOverlay);
    EXPECT_TRUE (press (KeyPress::spaceKey));
    expectInside (e.licenceDialog);
    EXPECT_TRUE (press (KeyPress::escapeKey));
    expectInside (e.licenceOverlay);
    setOverlay ("");
    EXPECT_EQ (focused(), &knob);

    // Each key takes one of them, but for the one that stays, also before the one before has gone.
    toasts.showToast ("Stays", tessarin::toastFatal, false);
    toasts.showError ("A");
    toasts.showError ("B");
    toasts.showError ("C");
    expectInside (toasts);

    for (const auto key : { KeyPress::spaceKey, KeyPress::escapeKey, KeyPress::returnKey })
        EXPECT_TRUE (open.window->getPeer()->handleKeyPress (KeyPress (key)));

    dispatchMessages();
    EXPECT_EQ (toasts.toasts.size(), 1);
    EXPECT_FALSE (press (KeyPress::spaceKey)) << "goes on to the host";
    expectInside (toasts);
    EXPECT_FALSE (e.presetBrowser.isVisible());
}

TEST (Overlays, PlaceTheSettingsAndShowTheLogFile)
{
    OpenEditor open;
    const FakeProgram files ("xdg-open", open.config.file ("bin"));
    auto& modal = open.editor->settingsModal;
    const auto before = open.window->render();
    open.window->clickMouse (open.editor->topBar.settingsButton, { 10, 10 });

    // In the editor of 1068 by 800: half the width minus 170, and a margin of 20.
    const Rectangle<int> version (384, 116, 340, 20), scale (384, 170, 150, 20);
    EXPECT_EQ (modal.panel.getBounds(), (Rectangle<int> (364, 100, 380, 145)));
    EXPECT_EQ (modal.scaleBox.getBounds(), scale.withX (574));
    EXPECT_EQ (modal.logButton.getBounds(), (Rectangle<int> (479, 210, 150, 20)));
    EXPECT_EQ (modal.panel.titleLabel.getText(), "Settings");
    EXPECT_EQ (modal.logButton.getButtonText(), "Show Log File");
    EXPECT_EQ (modal.themeBox.getParentComponent(), nullptr) << "one of its themes does not exist";
    const auto image = open.window->render();
    const juce::Font font (juce::FontOptions (14.0f));
    EXPECT_TRUE (pixels::areNear (image.getPixelAt (3, 700),
                                  before.getPixelAt (3, 700).overlaidWith (Colour (0xbb000000)), 1));
    EXPECT_TRUE (pixels::showsText (image, version.withTrimmedLeft (240), "v1.0.1", version, font, text,
                                    panel, Justification::centredRight, true));
    EXPECT_TRUE (pixels::showsText (image, scale, "GUI Scale", scale, font, text, panel,
                                    Justification::centredLeft, true));

    const auto click = [&] { open.window->clickMouse (modal.logButton, { 10, 10 }); };
    const auto typeSpace = [&]
    {
        modal.logButton.grabKeyboardFocus();
        open.window->typeKey (juce::KeyPress (juce::KeyPress::spaceKey));
        dispatchMessages();
    };
    const std::function<void()> presses[] { click, typeSpace };

    for (const auto& press : presses)
    {
        press();
        EXPECT_EQ (files.readLastArgument(),
                   open.config.file ("log.log").getParentDirectory().getFullPathName());
    }

    // A click beside the panel closes it.
    open.window->clickMouse (modal, { 364, 100 });
    EXPECT_TRUE (modal.isVisible());
    open.window->clickMouse (modal, { 363, 100 });
    EXPECT_FALSE (modal.isVisible());
}

TEST (Overlays, TellInTheStripWhatIsUnderTheMouse)
{
    OpenEditor open;
    auto& strip = open.editor->tooltipPanel;
    open.plugin.setLicence ([] (auto& status) { status.statusText = "Trial"; });

    const auto expectShown = [&] (const juce::String& shown, Colour colour, Justification justification)
    {
        // Beside the corner that resizes the window.
        const Rectangle<int> box (8, 0, strip.getWidth() - 16, 30);
        const auto isShown = [&]
        {
            return pixels::showsText (open.pictureOf (strip), box.reduced (10, 1), shown, box.reduced (5, 1),
                                      juce::Font (juce::FontOptions (14.0f)), colour, panel, justification,
                                      true);
        };
        EXPECT_TRUE (eventually (isShown)) << shown;
    };

    // What can tell nothing leaves the strip to the status; where there is nothing at all, the last text stays.
    open.window->moveMouse (open.editor->outputPanel, { 5, 5 });
    expectShown ("Trial", text, Justification::centredRight);
    open.window->moveMouse (open.editor->topBar.saveButton, { 5, 5 });
    expectShown ("Save the current state as a preset", warning, Justification::centredLeft);
    open.window->moveMouse (*open.editor, { -1, -1 });
    dispatchMessages();
    expectShown ("Save the current state as a preset", warning, Justification::centredLeft);
    open.window->moveMouse (open.editor->outputPanel, { 5, 5 });
    expectShown ("Trial", text, Justification::centredRight);
}
