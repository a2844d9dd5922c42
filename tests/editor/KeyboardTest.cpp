#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

#include <tuple>

using juce::KeyPress;

namespace
{
/** What the tab key finds in "Multi Band", in its order. The initial preset has another layout. */
juce::StringArray getStops()
{
    juce::StringArray stops { "Open the preset browser",
                              "Preset, changed",
                              "Next preset",
                              "Save the current state as a preset",
                              "Open the user manual",
                              "Open the plugin settings",
                              "Bypass the processing" };

    for (const auto* band : { "Low", "Mid", "High" })
    {
        for (const auto* button : { "Mute", "Solo", "Enable" })
            stops.add (juce::String (band) + " Band " + button);

        stops.addArray (juce::String (band) == "Low"   ? juce::StringArray ("Low/Mid Crossover")
                        : juce::String (band) == "Mid" ? juce::StringArray ("Mid/High Crossover")
                                                       : juce::StringArray());
    }

    stops.addArray ({ "Single Band", "Multi Band", "Mid / Side", "Left / Right", "Off", "2x", "4x", "8x",
                      "16x", "In Gain" });

    for (auto panel = 0; panel < 4; ++panel)
        stops.addArray ({ "Link", "Enable", "Clipper shape", "Mode", "Threshold", "Shape", "Makeup" });

    stops.addArray ({ "Short Term In", "Short Term Out", "Loudness difference", "Peak In", "Peak Out",
                      "Peak difference" });
    return stops;
}
} // namespace

TEST (Keyboard, ReachesEveryControlDrawsARingThereAndPressesIt)
{
    OpenEditor open;
    open.set ("layout", 1);
    auto& p = open.plugin.processor;
    auto numReadouts = 0;
    open.editor->grabKeyboardFocus();
    juce::StringArray titles;

    for (auto before = open.pictureOf (*open.editor); titles.size() < 70;)
    {
        open.window->typeKey (KeyPress (KeyPress::tabKey));
        dispatchMessages();
        auto* focused = juce::Component::getCurrentlyFocusedComponent();
        const auto* button = dynamic_cast<juce::Button*> (focused);
        const auto title =
            button != nullptr && focused->getTitle().isEmpty() ? button->getName() : focused->getTitle();

        if (titles.size() > 0 && title == titles[0])
            break;

        titles.add (title);
        const auto area = open.editor->getLocalArea (focused, focused->getLocalBounds());
        const auto after = open.pictureOf (*open.editor);
        EXPECT_FALSE (pixels::difference (before, after, area).isEmpty()) << title;
        before = after;

        if (open.editor->outputPanel.isParentOf (focused))
        {
            ++numReadouts;
            p.inputMaxPeakDb = -3.0f;
            open.window->typeKey (KeyPress (numReadouts % 2 == 0 ? KeyPress::spaceKey : KeyPress::returnKey));
            EXPECT_EQ (p.inputMaxPeakDb, -100.0f) << title;
        }
        else if (auto* graph = dynamic_cast<luna::SaturatorGraph*> (focused))
        {
            for (const auto key :
                 { KeyPress::spaceKey, KeyPress::downKey, KeyPress::downKey, KeyPress::returnKey })
                open.window->typeKey (KeyPress (key));

            dispatchMessages();
            EXPECT_EQ (graph->viewMode, luna::SaturatorGraph::ViewMode::amplitude);
            before = open.pictureOf (*open.editor);
        }
        else if (auto* box = dynamic_cast<juce::ComboBox*> (focused))
        {
            open.window->typeKey (KeyPress (KeyPress::spaceKey));
            // Soon after it has opened, JUCE closes it again: no window of this program has the screen's focus.
            dispatchUntil ([] { return juce::Component::getNumCurrentlyModalComponents() == 1; });
            EXPECT_EQ (juce::Component::getNumCurrentlyModalComponents(), 1) << "its menu, " << title;
            open.window->typeKey (KeyPress (KeyPress::escapeKey));
            dispatchMessages();
            EXPECT_TRUE (box->hasKeyboardFocus (false)) << title;
        }
    }

    EXPECT_EQ (numReadouts, 6 + 8);
    titles.removeRange (titles.size() - 8, 8);
    EXPECT_EQ (titles.joinIntoString ("|"), getStops().joinIntoString ("|"));
}

TEST (Keyboard, StaysWithTheWindowWhenTheControlThatHasItIsDisabledOrGoes)
{
    OpenEditor open;
    auto& e = *open.editor;
    auto& panel = e.singleEditor;
    const auto focused = [] { return juce::Component::getCurrentlyFocusedComponent(); };
    const std::tuple<juce::Component*, const char*, double> cases[] {
        { &panel.thresholdSlider.slider, "enable_single", 0.0 },
        { &panel.modeBox, "enable_single", 0.0 },
        { &panel.makeupSlider.slider, "link_single", 1.0 },
        { &panel.shapeSlider.slider, "mode_single", 0.0 },
        { &panel.graph, "enable", 0.0 },
        { &panel.linkButton, "layout", 1.0 }
    };

    for (const auto& [control, id, value] : cases)
    {
        control->grabKeyboardFocus();
        EXPECT_EQ (focused(), control) << id;
        open.set (id, value);
        EXPECT_EQ (focused(), &e) << id;
        open.set (id, 1.0 - value);
    }

    // At the end of the list, where the space bar has brought it.
    const auto getPreset = [&] { return open.plugin.processor.presetManager.getCurrentPreset().name; };
    e.topBar.nextButton.grabKeyboardFocus();
    open.window->typeKey (KeyPress (KeyPress::spaceKey));
    dispatchMessages();
    EXPECT_EQ (getPreset(), "Loud");
    EXPECT_FALSE (e.topBar.nextButton.isEnabled());
    open.window->typeKey (KeyPress ('z', juce::ModifierKeys::ctrlModifier, 0));
    dispatchMessages();
    EXPECT_NE (getPreset(), "Loud") << "the key is heard";
}

TEST (Keyboard, TakesBackNoValueWhileOneIsTyped)
{
    OpenEditor open;
    const KeyPress undo ('z', juce::ModifierKeys::ctrlModifier, 0);
    open.editor->singleEditor.thresholdSlider.slider.grabKeyboardFocus();

    const std::tuple<KeyPress, double> steps[] { { KeyPress (KeyPress::downKey), -0.5 },
                                                 { KeyPress ('4', {}, '4'), -0.5 },
                                                 { undo, -0.5 },
                                                 { KeyPress (KeyPress::escapeKey), -0.5 },
                                                 { undo, 0.0 } };

    for (const auto& [key, value] : steps)
    {
        open.window->typeKey (key);
        dispatchMessages();
        EXPECT_NEAR (open.plugin.get ("threshold_single"), value, 1.0e-5) << key.getTextDescription();
    }
}

TEST (Keyboard, ChoosesAAndBOnEveryKeyboard)
{
    using juce::ModifierKeys;
    using Side = tessarin::EditHistory::Side;
    constexpr auto ctrl = ModifierKeys::ctrlModifier, shift = ModifierKeys::shiftModifier;

    OpenEditor open;
    auto& history = open.plugin.processor.editHistory;
    open.editor->grabKeyboardFocus();

    for (const auto modifiers : { ctrl + 0, ctrl | shift })
        for (const auto& [digit, side] : { std::pair ('2', Side::b), { '1', Side::a } })
        {
            open.window->typeKey ({ digit, ModifierKeys (modifiers), 0 });
            EXPECT_EQ (history.getHeardSide(), side) << digit << " " << modifiers;
        }

    for (const auto modifiers : { 0, ctrl | ModifierKeys::altModifier })
    {
        open.window->typeKey ({ '2', ModifierKeys (modifiers), 0 });
        EXPECT_EQ (history.getHeardSide(), Side::a) << modifiers;
    }
}
