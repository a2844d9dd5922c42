#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

using juce::Rectangle;

namespace
{
/** The largest square in the middle of a rectangle. */
Rectangle<int> squareIn (Rectangle<int> area)
{
    return area.withSizeKeepingCentre (juce::jmin (area.getWidth(), area.getHeight()),
                                       juce::jmin (area.getWidth(), area.getHeight()));
}
} // namespace

TEST (MultiModeClipperEditor, ArrangesItsControlsByItsWidth)
{
    OpenEditor open;
    auto& panel = open.editor->singleEditor;
    const auto place = [&panel] (int width) { panel.setSize (width, 462); };

    // Below the title row, with 20 pixels at the other sides.
    const auto content = [] (int width) { return Rectangle<int> (20, 60, width - 40, 382); };
    const auto bottomOf = [] (const juce::Component& c) { return c.getBottom(); };

    for (const auto width : { 551, 780 })
    {
        place (width);
        EXPECT_EQ (panel.graph.getBounds(), content (width).withWidth (382));
        EXPECT_TRUE (panel.modeLabel.isVisible());
        EXPECT_EQ (panel.modeLabel.getJustificationType(), juce::Justification::centred);
        EXPECT_EQ (panel.modeBox.getBounds().getX(), 20 + 382 + 20);
        EXPECT_EQ (panel.modeBox.getRight(), width - 20);
        EXPECT_EQ (panel.modeBox.getY(), panel.modeLabel.getY() + 20);
        EXPECT_LT (bottomOf (panel.thresholdSlider), panel.makeupSlider.getY());
        EXPECT_LT (bottomOf (panel.makeupSlider), panel.shapeSlider.getY());
    }

    for (const auto width : { 260, 314, 550 })
    {
        place (width);
        const auto graph = squareIn (content (width).withTrimmedBottom (95 + 20 + 20 + 20));
        EXPECT_EQ (panel.graph.getBounds(), graph);
        EXPECT_TRUE (panel.modeLabel.isVisible());
        EXPECT_EQ (panel.modeLabel.getJustificationType(), juce::Justification::centredLeft);
        EXPECT_EQ (panel.modeLabel.getBounds(), (Rectangle<int> (graph.getX(), 442 - 95 - 40, 60, 20)));
        EXPECT_EQ (panel.modeBox.getRight(), graph.getRight());
        EXPECT_EQ (panel.shapeSlider.getBounds().withX (0), (Rectangle<int> (0, 442 - 95, 60, 95)));
        EXPECT_LT (panel.thresholdSlider.getX(), panel.shapeSlider.getX());
        EXPECT_LT (panel.shapeSlider.getX(), panel.makeupSlider.getX());
    }

    for (const auto width : { 200, 259 })
    {
        place (width);
        EXPECT_EQ (panel.graph.getBounds(), squareIn (content (width).withTrimmedBottom (2 * 95 + 20 + 30)));
        EXPECT_FALSE (panel.modeLabel.isVisible());
        EXPECT_EQ (panel.shapeSlider.getBounds(), content (width).removeFromBottom (95));
        EXPECT_EQ (panel.thresholdSlider.getY(), panel.makeupSlider.getY());
        EXPECT_EQ (bottomOf (panel.makeupSlider), panel.shapeSlider.getY() - 10);
    }

    for (const auto width : { 134, 199 })
    {
        place (width);
        EXPECT_EQ (panel.graph.getBounds(), squareIn (content (width).withTrimmedBottom (3 * 95 + 20 + 40)));
        EXPECT_FALSE (panel.modeLabel.isVisible());
        EXPECT_EQ (panel.makeupSlider.getBounds(), content (width).removeFromBottom (95));
        EXPECT_EQ (bottomOf (panel.thresholdSlider), panel.shapeSlider.getY() - 10);
    }

    EXPECT_EQ (panel.enableButton.getBounds(), (Rectangle<int> (199 - 45, 15, 25, 20)));
    EXPECT_EQ (panel.linkButton.getBounds(), (Rectangle<int> (199 - 75, 15, 25, 20)));
}

TEST (MultiModeClipperEditor, OpensRightWhileItsSectionWaitsForABlockToEnd)
{
    OpenEditor open;
    const auto& isOn = *open.plugin.processor.parameters.getRawParameterValue ("enable_single");

    for (const auto value : { 0.0f, 1.0f })
    {
        open.close();

        // As the audio thread holds it during a block. The parameter has its value before, the section after.
        open.plugin.processor.processLock.enter();
        std::thread host ([&] { open.plugin.set ("enable_single", static_cast<double> (value)); });

        while (isOn.load() != value)
            std::this_thread::yield();

        open.open();
        open.plugin.processor.processLock.exit();
        host.join();
        dispatchMessages();
        EXPECT_EQ (open.editor->singleEditor.thresholdSlider.isEnabled(), value > 0.5f);
        EXPECT_EQ (open.editor->singleEditor.makeupSlider.isEnabled(), value > 0.5f);
        EXPECT_EQ (open.editor->singleEditor.enableButton.getToggleState(), value > 0.5f);
    }
}

TEST (MultiModeClipperEditor, OffersItsModesInTwoGroups)
{
    OpenEditor open;
    auto& box = open.editor->singleEditor.modeBox;
    std::string menu;

    for (juce::PopupMenu::MenuItemIterator items (*box.getRootMenu()); items.next();)
    {
        const auto& item = items.getItem();
        menu += (item.isSeparator ? juce::String ("-") : item.text).toStdString();
        menu += item.itemID > 0 ? std::to_string (item.itemID) + " " : " ";
    }

    EXPECT_EQ (menu, "Clippers Hard1 Soft I2 Soft II3 - Enhancers Pressure4 Boost5 ");
    EXPECT_EQ (box.getText(), "Soft I");

    GestureRecorder mode (open.plugin.parameter ("mode_single"));
    box.setSelectedId (5);
    dispatchMessages();
    EXPECT_EQ (mode.events, (std::vector<std::string> { "begin", "=4", "end" }));

    // What the host chooses while the window opens stays, and is nobody's gesture.
    open.close();
    open.editor.reset (
        dynamic_cast<OrvoAudioProcessorEditor*> (open.plugin.processor.createEditorIfNeeded()));
    mode.events.clear();
    std::thread ([&] { open.plugin.set ("mode_single", 3); }).join();
    dispatchMessages();
    EXPECT_EQ (mode.events, (std::vector<std::string> { "=3" }));
    EXPECT_EQ (open.editor->singleEditor.modeBox.getText(), "Pressure");
}

TEST (MultiModeClipperEditor, RecordsKnobsAsGestures)
{
    OpenEditor open;
    auto* knob = &open.editor->singleEditor.thresholdSlider.slider;
    GestureRecorder threshold (open.plugin.parameter ("threshold_single"));

    open.window->pressMouse (*knob, { 30, 30 });
    open.window->dragMouse (*knob, { 30, 70 });
    open.window->releaseMouse();
    EXPECT_LT (open.plugin.get ("threshold_single"), 0.0);
    EXPECT_EQ (threshold.events.front(), "begin");
    EXPECT_EQ (threshold.events.back(), "end");
    EXPECT_EQ (knob->getDoubleClickReturnValue(), 0.0);
    EXPECT_TRUE (knob->isDoubleClickReturnEnabled());

    threshold.events.clear();
    const auto before = open.plugin.get ("threshold_single");
    knob->keyPressed (juce::KeyPress (juce::KeyPress::upKey));
    EXPECT_GT (open.plugin.get ("threshold_single"), before);
    EXPECT_EQ (threshold.events.front(), "begin");
    EXPECT_EQ (threshold.events.back(), "end");
}
