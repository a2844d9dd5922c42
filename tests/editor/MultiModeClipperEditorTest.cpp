#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>
#include <utility>

TEST (MultiModeClipperEditor, ArrangesItsControlsByItsWidth)
{
    using juce::Rectangle;
    OpenEditor open;
    auto& panel = open.editor->singleEditor;

    // The graph is the largest square that the rows leave; the knobs' order is written row by row.
    for (const auto& [width, graph, knobs, hasLabel] :
         { std::tuple { 780, Rectangle<int> (20, 60, 382, 382), "/Threshold/Makeup/Shape", true },
           { 551, { 20, 60, 382, 382 }, "/Threshold/Makeup/Shape", true },
           { 550, { 161, 60, 227, 227 }, "/Threshold Shape Makeup", true },
           { 260, { 20, 63, 220, 220 }, "/Threshold Shape Makeup", true },
           { 259, { 58, 60, 142, 142 }, "/Threshold Makeup/Shape", false },
           { 200, { 29, 60, 142, 142 }, "/Threshold Makeup/Shape", false },
           { 199, { 81, 60, 37, 37 }, "/Threshold/Shape/Makeup", false },
           { 134, { 48, 60, 37, 37 }, "/Threshold/Shape/Makeup", false } })
    {
        SCOPED_TRACE (width);
        panel.setSize (width, 462);
        EXPECT_EQ (panel.graph.getBounds(), graph);
        EXPECT_EQ (panel.modeLabel.isVisible(), hasLabel);

        if (hasLabel && width <= 550)
        {
            EXPECT_EQ (
                panel.modeLabel.getBounds().getUnion (panel.modeBox.getBounds()).withY (0).withHeight (1),
                graph.withY (0).withHeight (1));
        }

        std::map<std::pair<int, int>, juce::String> placed;
        juce::String order;

        for (const auto* knob : { &panel.thresholdSlider, &panel.shapeSlider, &panel.makeupSlider })
            placed[{ knob->getY(), knob->getX() }] = knob->nameLabel.getText();

        for (auto y = -1; const auto& [place, name] : placed)
            order << (place.first == std::exchange (y, place.first) ? " " : "/") << name;

        EXPECT_EQ (order, knobs);
        juce::RectangleList<int> free (panel.getContentBounds());

        for (auto* part :
             std::initializer_list<juce::Component*> { &panel.graph, &panel.modeBox, &panel.thresholdSlider,
                                                       &panel.shapeSlider, &panel.makeupSlider })
        {
            EXPECT_TRUE (free.containsRectangle (part->getBounds())) << "nothing overlaps";
            free.subtract (part->getBounds());
        }
    }
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
    EXPECT_EQ (menuText (*box.getRootMenu()),
               "Clippers 0, Hard 1, Soft I 2, Soft II 3, -, Enhancers 0, Pressure 4, Boost 5");
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

TEST (MultiModeClipperEditor, RecordsKeysOnAKnobAsGestures)
{
    OpenEditor open;
    auto* knob = &open.editor->singleEditor.thresholdSlider.slider;

    for (const auto& [key, isUp] : { std::pair { juce::KeyPress::upKey, true },
                                     { juce::KeyPress::rightKey, true },
                                     { juce::KeyPress::downKey, false },
                                     { juce::KeyPress::leftKey, false } })
    {
        open.set ("threshold_single", -6.0);
        GestureRecorder threshold (open.plugin.parameter ("threshold_single"));
        knob->keyPressed (juce::KeyPress (key));
        EXPECT_EQ (open.plugin.get ("threshold_single") > -6.0, isUp);
        ASSERT_EQ (threshold.events.size(), 3u);
        EXPECT_EQ (threshold.events.front(), "begin");
        EXPECT_EQ (threshold.events.back(), "end");
    }
}
