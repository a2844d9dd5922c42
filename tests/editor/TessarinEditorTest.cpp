#include "common/ColourIds.h"
#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

using juce::Rectangle;

namespace
{
/** What the window shows in a layout, with each of its overlays open once, but for what keeps the colours that its
    panel was given: curves, arcs and bands. */
void addPictures (std::vector<juce::Image>& pictures, OpenEditor& open, int layout)
{
    auto& e = *open.editor;
    open.set ("layout", layout);
    const auto isMarked = [&] { return e.topBar.presetBox.getTitle().contains ("changed") == (layout > 0); };
    EXPECT_TRUE (eventually (isMarked));
    std::vector<Rectangle<int>> ownColours;

    if (e.bandEditor.isVisible())
        ownColours.push_back (e.bandEditor.getBounds());

    for (auto* panel : open.shownPanels())
    {
        ownColours.push_back (e.getLocalArea (&panel->graph, panel->graph.plot.expanded (2)));

        for (auto* knob : { &panel->thresholdSlider, &panel->shapeSlider, &panel->makeupSlider })
            ownColours.push_back (e.getLocalArea (&knob->slider, Rectangle<int> (60, 68)));
    }

    const auto add = [&]
    {
        open.window->moveMouse (e, { 5, 5 });
        dispatchMessages();
        auto picture = open.pictureOf (e);

        for (const auto& area : ownColours)
            picture.clear (area);

        pictures.push_back (picture);
    };

    add();
    e.setPresetBrowserVisible (true);
    add();
    e.setPresetBrowserVisible (false);

    for (auto* dialog : std::initializer_list<juce::Component*> { &e.settingsModal, &e.savePresetModal })
    {
        dialog->setVisible (true);
        dialog->toFront (true);
        add();
        dialog->setVisible (false);
    }

    open.plugin.processor.toastManager.showToast ("Note", tessarin::toastNotice, true);
    add();
    open.plugin.processor.toastManager.toasts.clear();
    e.toastManager->setVisible (false);
}

std::vector<juce::Image> picturesOf (OpenEditor& open)
{
    std::vector<juce::Image> pictures;

    for (auto layout = 0; layout < 4; ++layout)
        addPictures (pictures, open, layout);

    return pictures;
}
} // namespace

TEST (TessarinEditor, ShowsANewThemeEverywhereAtOnce)
{
    OpenEditor open;
    picturesOf (open);
    open.plugin.processor.settings.setValue ("theme", "Ice");
    dispatchMessages();
    const auto changed = picturesOf (open);
    open.reopen();
    const auto fresh = picturesOf (open);

    // A window that changed its theme looks like one that was opened with it.
    for (size_t i = 0; i < fresh.size(); ++i)
        EXPECT_EQ (pixels::difference (changed[i], fresh[i]), Rectangle<int>()) << i;

    EXPECT_EQ (fresh[0].getPixelAt (open.editor->outputPanel.getX() + 5, 700), juce::Colour (0xffdfdfdf))
        << "it is";

    // There was no hint in the strip.
    open.plugin.processor.settings.setValue ("theme", "Night");
    dispatchMessages();
    const auto& hint = open.editor->tooltipPanel.tooltipLabel;
    EXPECT_EQ (hint.findColour (juce::Label::textColourId),
               hint.findColour (luna::ColourIds::warningColourId));
}

TEST (TessarinEditor, KeepsItsSizeAndMultipliesTheScales)
{
    OpenEditor open;
    EXPECT_EQ (open.editor->getBounds().withZeroOrigin(), (Rectangle<int> (1068, 800)));

    open.editor->setSize (1200, 900);
    open.reopen();
    EXPECT_EQ (open.editor->getWidth(), 1200);
    EXPECT_EQ (open.editor->getHeight(), 900);

    open.plugin.processor.settings.setValue ("scale", 2.0);

    for (const auto& [hostScale, total] :
         { std::pair { 1.5f, 3.0f }, { 0.0f, 3.0f }, { -1.0f, 3.0f }, { 1.0f, 2.0f } })
    {
        open.editor->setScaleFactor (hostScale);
        EXPECT_TRUE (open.hasScale (total)) << hostScale;
        EXPECT_EQ (open.editor->getWidth(), 1200);
    }

    // Whatever stands in the file, the window can be seen.
    for (const auto* damaged : { "0", "-1", "abc", "nan", "inf", "40", "0.0001", "0.24" })
    {
        open.plugin.processor.settings.setValue ("scale", damaged);
        open.editor->setScaleFactor (1.5f);
        EXPECT_TRUE (open.hasScale (1.5f)) << damaged;
    }

    open.plugin.processor.settings.setValue ("scale", 0.25);
    open.editor->setScaleFactor (1.0f);
    EXPECT_TRUE (open.hasScale (0.25f)) << "less than offered";

    open.editor->setBoundsConstrained ({ 10, 10 });
    EXPECT_EQ (open.editor->getBounds().getBottomRight(), juce::Point (977, 800));
    open.editor->setBoundsConstrained ({ 5000, 5000 });
    EXPECT_EQ (open.editor->getLocalBounds(), (Rectangle<int> (2000, 1500)));
    EXPECT_TRUE (open.editor->isResizable());
}

TEST (TessarinEditor, LaysOverlaysOverTheContentInTheirOrder)
{
    OpenEditor open;
    auto& e = *open.editor;
    e.setPresetBrowserVisible (true);

    const std::vector<juce::Component*> order { &e.outputPanel,   &e.presetBrowser,   e.toastManager,
                                                &e.settingsModal, &e.savePresetModal, &e.licenceDialog };

    for (size_t i = 1; i < order.size(); ++i)
        EXPECT_LT (e.getIndexOfChildComponent (order[i - 1]), e.getIndexOfChildComponent (order[i])) << i;

    for (const auto* dialog : { order[2], order[3], order[4], order[5] })
    {
        EXPECT_FALSE (dialog->isVisible());
        EXPECT_EQ (dialog->getBounds(), e.getLocalBounds());
    }

    // A message that came without an editor shows with the next one.
    open.close();
    open.plugin.processor.toastManager.showError ("Lost");
    open.open();
    EXPECT_EQ (open.editor->toastManager->getParentComponent(), open.editor.get());
    EXPECT_TRUE (open.editor->toastManager->toasts[0]->isShowing());
    EXPECT_EQ (open.editor->toastManager->toasts[0]->getBounds(), (Rectangle<int> (10, 20, 1048, 50)));
}

TEST (TessarinEditor, FollowsSettingsOfOtherInstancesAndTheLicence)
{
    OpenEditor open;
    const auto settingsFile = open.config.file ("settings.settings");
    const juce::String text ("<PROPERTIES><VALUE name=\"scale\" val=\"1.5\"/>"
                             "<VALUE name=\"theme\" val=\"Night\"/></PROPERTIES>");
    const auto scaleAfterALook = [&open]
    {
        open.editor->settingsModal.fileListener.timerCallback();
        dispatchMessages();
        return open.editor->settingsModal.scaleBox.getText();
    };

    settingsFile.replaceWithText (text);
    EXPECT_EQ (scaleAfterALook(), "Bigger");
    EXPECT_FALSE (open.plugin.processor.settings.needsToBeSaved());
    EXPECT_EQ (settingsFile.loadFileAsString(), text);
    EXPECT_TRUE (open.hasScale (1.5f));
    EXPECT_EQ (open.editor->lookAndFeel->lookAndFeel.themeName, "Night");

    // A file from a backup is older.
    settingsFile.replaceWithText (text.replace ("1.5", "0.75"));
    settingsFile.setLastModificationTime (juce::Time (2020, 1, 1, 0, 0));
    EXPECT_EQ (scaleAfterALook(), "Small");

    // What is not saved yet is not lost to a newer file.
    open.plugin.processor.settings.setValue ("scale", 2.0);
    settingsFile.setLastModificationTime (juce::Time (2030, 1, 1, 0, 0));
    EXPECT_EQ (scaleAfterALook(), "Massive");
    open.plugin.processor.settings.saveOrLog();

    // Without a window nothing watches the file.
    open.close();
    settingsFile.replaceWithText (text.replace ("1.5", "0.5").replace ("Night", "Ice"));
    open.open();
    EXPECT_TRUE (open.hasScale (0.5f));
    EXPECT_EQ (open.editor->lookAndFeel->lookAndFeel.themeName, "Ice");

    open.plugin.setLicence ([] (auto& status) { status.statusText = "Trial"; });
    dispatchMessages();
    EXPECT_EQ (open.editor->tooltipPanel.statusLabel.getText(), "Trial");
}
