#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

#include <tuple>

using juce::Colour;

namespace
{
using Editor = OrvoAudioProcessorEditor;
using Processor = OrvoAudioProcessor;

/** What a panel is made for. The side's identifier is not its name. */
struct Panel
{
    std::string id;
    decltype (&Editor::singleEditor) panel;
    decltype (&Processor::singleClipper) clipper;
    int layout;
    const char* name;
    float hueRotation;
};

void PrintTo (const Panel& panel, std::ostream* stream)
{
    *stream << panel.id;
}

const std::vector<Panel> allPanels {
    { "low_band", &Editor::lowBandEditor, &Processor::lowBandClipper, 1, "Low", 0.0f },
    { "mid_band", &Editor::midBandEditor, &Processor::midBandClipper, 1, "Mid", -0.25f },
    { "high_band", &Editor::highBandEditor, &Processor::highBandClipper, 1, "High", -0.5f },
    { "mid_channel", &Editor::midChannelEditor, &Processor::midChannelClipper, 2, "Mid", 0.0f },
    { "high_channel", &Editor::sideChannelEditor, &Processor::sideChannelClipper, 2, "Side", -0.25f },
    { "left_channel", &Editor::leftChannelEditor, &Processor::leftChannelClipper, 3, "Left", 0.0f },
    { "right_channel", &Editor::rightChannelEditor, &Processor::rightChannelClipper, 3, "Right", -0.25f },
    { "single", &Editor::singleEditor, &Processor::singleClipper, 0, "Clipper", 0.0f },
    { "post", &Editor::postEditor, &Processor::postClipper, 0, "Post", -0.75f },
};

/** One of the nine, in its layout. */
class Panels : public testing::TestWithParam<Panel>
{
protected:
    Panels()
    {
        open.editor->setSize (2000, 800);
        open.window.reset();
        open.window = std::make_unique<OffscreenWindow> (*open.editor);
        open.set ("layout", GetParam().layout);
    }

    void set (const char* prefix, double value) { open.set (prefix + id, value); }

    std::string changedByDragOf (juce::Slider& knob)
    {
        return open.changedBy (
            [&]
            {
                open.window->pressMouse (knob, { 30, 30 });
                open.window->dragMouse (knob, { 30, 45 });
                open.window->releaseMouse();
            });
    }

    std::string changedByClickOn (juce::Component& button)
    {
        return open.changedBy ([&] { open.window->clickMouse (button, { 10, 10 }); });
    }

    /** What stands below a knob. */
    static juce::String valueOf (tessarin::ParameterLabelSlider& knob)
    {
        for (auto* child : knob.slider.getChildren())
            if (const auto* box = dynamic_cast<juce::Label*> (child))
                return box->getText();

        return {};
    }

    /** Whether the curve of the accent's colour passes there; both in dB, on axes from -30 to 6. */
    bool hasCurveAt (double inputDb, double outputDb)
    {
        const auto size = panel.graph.plot.getWidth();
        const auto x = juce::roundToInt (20.0 + size * (inputDb + 30.0) / 36.0);
        const auto y = juce::roundToInt (20.0 + size * (6.0 - outputDb) / 36.0);
        return open.pictureOf (panel.graph).getPixelAt (x, y) == accent;
    }

    OpenEditor open;
    const std::string id = GetParam().id;
    MultiModeClipperEditor& panel = (*open.editor).*GetParam().panel;
    MultiModeClipper& clipper = open.plugin.processor.*GetParam().clipper;

    // The primary colour of the theme "Default".
    const Colour accent = Colour (0xff3470b7).withRotatedHue (GetParam().hueRotation);
};
} // namespace

TEST_P (Panels, EditTheirOwnSectionAndNoOther)
{
    EXPECT_EQ (changedByDragOf (panel.thresholdSlider.slider), "threshold_" + id + " ");
    EXPECT_EQ (changedByDragOf (panel.makeupSlider.slider), "gain_" + id + " ");
    EXPECT_EQ (open.changedBy ([&] { panel.modeBox.setSelectedId (4); }), "mode_" + id + " ");
    EXPECT_EQ (open.plugin.get ("mode_" + id), 3.0);
    set ("shape_", 0.5);
    EXPECT_EQ (changedByDragOf (panel.shapeSlider.slider), "shape_" + id + " ");
    EXPECT_EQ (changedByClickOn (panel.linkButton), "link_" + id + " ");
    EXPECT_EQ (changedByClickOn (panel.enableButton), "enable_" + id + " ");

    // Nor does it show what belongs to others.
    set ("enable_", 1.0);
    open.window->moveMouse (*open.editor, { 5, 5 });
    dispatchMessages();
    const auto before = open.pictureOf (panel);

    for (const auto& other : allPanels)
    {
        if (other.id == id)
            continue;

        for (const auto& [prefix, value] : { std::pair { "threshold_", -9.0 },
                                             { "gain_", 3.0 },
                                             { "shape_", 0.25 },
                                             { "mode_", 0.0 },
                                             { "link_", 1.0 },
                                             { "enable_", 0.0 } })
            open.plugin.set (prefix + other.id, value);

        (open.plugin.processor.*other.clipper).current->envelope = 1.0f;
    }

    for (auto i = 0; i < 3; ++i)
        dispatchMessages();

    EXPECT_EQ (pixels::difference (before, open.pictureOf (panel)), juce::Rectangle<int>());
}

TEST_P (Panels, ShowTheirOwnSection)
{
    const std::tuple<const char*, const char*, bool> modes[] { { "Hard", "Shape", false },
                                                               { "Soft I", "Shape", true },
                                                               { "Soft II", "Shape", false },
                                                               { "Pressure", "Pressure", true },
                                                               { "Boost", "Boost", true } };
    set ("shape_", 0.5);

    for (const auto number : { 4, 3, 2, 1, 0 })
    {
        const auto& [name, label, hasShape] = modes[number];

        // As a host does it, from its audio thread.
        std::thread ([&] { open.plugin.set ("mode_" + id, number); }).join();
        dispatchMessages();
        EXPECT_EQ (panel.modeBox.getText(), name);
        EXPECT_EQ (panel.shapeSlider.nameLabel.getText(), label);
        EXPECT_EQ (panel.shapeSlider.isVisible(), hasShape) << name;
        EXPECT_EQ (open.plugin.get ("shape_" + id), 0.5);
        EXPECT_TRUE (! hasShape || valueOf (panel.shapeSlider) == "50%");
    }

    set ("threshold_", -12.0);
    set ("gain_", 4.5);
    EXPECT_EQ (valueOf (panel.thresholdSlider), "-12.0dB");
    EXPECT_EQ (valueOf (panel.makeupSlider), "4.5dB");
    EXPECT_TRUE (eventually ([&] { return hasCurveAt (0.0, -12.0); })) << "cut hard";
    EXPECT_TRUE (hasCurveAt (-20.0, -20.0) && ! hasCurveAt (0.0, 0.0));
    EXPECT_TRUE (open.isMovedBy (panel.graph, [&] { clipper.current->envelope = 1.0f; }));
    EXPECT_EQ (panel.titleLabel.getText(), GetParam().name);
}

TEST_P (Panels, GreyOutWhatLinkAndEnableTakeOutOfTheUsersHands)
{
    const std::vector<juce::Component*> parts { &panel.thresholdSlider, &panel.shapeSlider, &panel.graph,
                                                &panel.makeupSlider };
    const auto state = [&]
    {
        std::string text;

        // A part that is enabled has the panel's own colour: in its curve, or in the arc of its value.
        for (auto* part : parts)
            text += open.shows (*part, accent) ? "+" : "-";

        EXPECT_EQ (panel.modeBox.isEnabled(), text[0] == '+');
        EXPECT_EQ (panel.modeLabel.isEnabled(), text[0] == '+');
        return text;
    };

    // So that each has an arc.
    for (const auto& [prefix, value] :
         { std::pair { "threshold_", -6.0 }, { "shape_", 0.5 }, { "gain_", 6.0 } })
        open.plugin.set (prefix + id, value);

    EXPECT_TRUE (eventually ([&] { return state() == "++++"; }));
    GestureRecorder link (open.plugin.parameter ("link_" + id));
    open.window->clickMouse (panel.linkButton, { 10, 10 });
    open.window->moveMouse (*open.editor, { 5, 5 });
    EXPECT_EQ (state(), "+++-");
    EXPECT_EQ (link.events, (std::vector<std::string> { "begin", "=1", "end" }));

    open.window->clickMouse (panel.enableButton, { 10, 10 });
    EXPECT_EQ (state(), "----");
    EXPECT_TRUE (panel.enableButton.isEnabled() && panel.linkButton.isEnabled());

    // By the host.
    set ("link_", 0.0);
    set ("enable_", 1.0);
    EXPECT_EQ (state(), "++++");
    EXPECT_TRUE (panel.enableButton.getToggleState() && ! panel.linkButton.getToggleState());
    open.set ("enable", 0.0);
    EXPECT_EQ (state(), "----");
}

INSTANTIATE_TEST_SUITE_P (Nine, Panels, testing::ValuesIn (allPanels),
                          [] (const auto& test) { return test.param.id; });
