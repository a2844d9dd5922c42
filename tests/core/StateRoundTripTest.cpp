#include "core/StatefulPlugin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

// Whatever loads can be captured, and whatever was captured restores, the preset's name included.

namespace
{
using juce::String;

struct StateRoundTrip : testing::Test
{
    StateRoundTrip() { config.preset ("User").createDirectory(); }

    /** A name is any bytes. */
    void addPreset (const std::string& name, const std::string& text)
    {
        std::ofstream (config.preset ("User").getFullPathName().toStdString() + "/" + name + ".tpre") << text;
    }

    TemporaryConfig config;
    const bool hasFactory = config.preset ("Factory").createDirectory().wasOk();
};

TEST_F (StateRoundTrip, KeepsAPresetWhateverItsNameIs)
{
    // Surrogates and numbers beyond the last character; JUCE finds no file with other bytes that are no UTF-8.
    const std::vector<std::string> names { "\xed\xa0\x80",
                                           "\xed\xa0\x81",
                                           "\xf4\x90\x80\x80",
                                           "caf\xc3\xa9",
                                           "\xf0\x9f\x8e\x9b",
                                           "a\nb",
                                           " &<>\"' ",
                                           "\x01",
                                           "~root" };

    for (const auto& name : names)
        addPreset (name, stateText (entry ("gain_single", "9")).toStdString());

    StatefulPlugin plugin, other;
    const auto presets = plugin.processor.presetManager.getPresets();
    ASSERT_EQ (presets.size(), static_cast<int> (names.size()) + 1);

    for (const auto& preset : presets)
    {
        SCOPED_TRACE (preset.name.toStdString());
        ASSERT_TRUE (plugin.processor.presetManager.loadPreset (preset.index));
        const auto block = plugin.capture();

        other.moveEverything();
        other.restore (block);
        EXPECT_EQ (other.values(), plugin.values());
        EXPECT_EQ (other.processor.getCurrentProgram(), preset.index);
    }
}

TEST_F (StateRoundTrip, KeepsWhatAPresetHoldsUnlessItIsFarTooMuch)
{
    const auto attributes = [] (int number)
    {
        String all;

        for (auto i = 0; i < number; ++i)
            all << "a" << i << "=\"1\" ";

        return all;
    };

    const auto description = [] (const char* text, int times)
    { return "description=\"" + String::repeatedString (String::fromUTF8 (text), times) + "\""; };

    struct Case
    {
        const char* name;
        String attributes, children;

        /** Or but the parameters and the name. */
        bool staysWhole;
    };

    const std::vector<Case> cases {
        { "63 attributes", attributes (63), {}, true },
        { "120 attributes", attributes (120), {}, true },
        { "128 attributes", attributes (128), {}, false },
        { "400 KB beyond ASCII", description ("\xc3\xa4", 200000), {}, true },
        { "one byte that is written as six", description ("\x7f", 1000000), {}, false },
        { "8 MB beyond ASCII", description ("\xc3\xa4", 4000000), {}, false },
        { "names", {}, String::repeatedString ("<a b=\"\"/>", 4990), false },
    };

    for (const auto& [name, extraAttributes, children, staysWhole] : cases)
        addPreset (name, stateText (entry ("gain_single", "9") + children, extraAttributes).toStdString());

    addPreset ("129 attributes", stateText ({}, attributes (129)).toStdString());
    StatefulPlugin plugin, other;
    auto& manager = plugin.processor.presetManager;
    ASSERT_EQ (manager.getNumPresets(), static_cast<int> (cases.size()) + 1) << "one is no preset";

    for (const auto& preset : manager.getPresets())
    {
        const auto found = std::find_if (cases.begin(), cases.end(),
                                         [&] (const Case& one) { return preset.name == one.name; });

        if (found == cases.end())
            continue;

        SCOPED_TRACE (found->name);
        ASSERT_TRUE (manager.loadPreset (preset.index));
        const auto tree = plugin.processor.parameters.copyState();
        const auto block = plugin.capture();

        other.moveEverything();
        other.restore (block);
        EXPECT_EQ (other.values(), plugin.values());
        EXPECT_EQ (other.get ("gain_single"), 9.0);
        EXPECT_EQ (other.processor.getCurrentProgram(), preset.index);

        const auto restored = other.processor.parameters.copyState();
        EXPECT_EQ (restored["a62"] == tree["a62"] && restored["description"] == tree["description"]
                       && restored.getNumChildren() == tree.getNumChildren(),
                   found->staysWhole);

        // The same holds for a preset that is saved from there.
        manager.finishSaving (config.base.getChildFile ("Saved.tpre"),
                              manager.makePresetText ("New", "B", "Ann"));
        EXPECT_EQ (plugin.processor.toastManager.toasts.getLast()->text, "Preset saved");
        plugin.processor.toastManager.toasts.clear();
    }
}
} // namespace
