#include "core/PluginUnderTest.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

// Whatever loads can be captured, and whatever was captured restores, the preset's name included.

namespace
{
using juce::String;

String attributes (int number)
{
    String all;

    for (auto i = 0; i < number; ++i)
        all << "a" << i << "=\"1\" ";

    return all;
}

String description (const char* text, int times)
{
    return "description=\"" + String::repeatedString (String::fromUTF8 (text), times) + "\"";
}

TEST (StateRoundTrip, KeepsAPresetWhateverItsNameIsAndWhatItHoldsUnlessThatIsFarTooMuch)
{
    struct Case
    {
        /** Any bytes. */
        std::string name;

        String attributes, children;
    };

    std::vector<Case> cases {
        { "63 attributes", attributes (63), {} },
        { "120 attributes", attributes (120), {} },
        { "128 attributes", attributes (128), {} },
        { "400 KB beyond ASCII", description ("\xc3\xa4", 200000), {} },
        { "one byte that is written as six", description ("\x7f", 1000000), {} },
        { "8 MB beyond ASCII", description ("\xc3\xa4", 4000000), {} },
        { "names", {}, String::repeatedString ("<a b=\"\"/>", 4990) },
    };

    // Of these the parameters and the name are kept.
    const juce::StringArray tooMuch { "128 attributes", "one byte that is written as six",
                                      "8 MB beyond ASCII", "names" };

    // Surrogates and numbers beyond the last character; JUCE finds no file with other bytes that are no UTF-8.
    for (const auto* name : { "\xed\xa0\x80", "\xed\xa0\x81", "\xf4\x90\x80\x80", "caf\xc3\xa9",
                              "\xf0\x9f\x8e\x9b", "a\nb", " &<>\"' ", "\x01", "~root" })
        cases.push_back ({ name, {}, {} });

    const TemporaryConfig config;
    config.preset ("Factory").createDirectory();
    config.addPreset ("User/129 attributes.tpre", stateText ({}, attributes (129)));

    for (const auto& [name, texts, children] : cases)
        std::ofstream (config.preset ("User").getFullPathName().toStdString() + "/" + name + ".tpre")
            << stateText (entry ("gain_single", "9") + children, texts);

    PluginUnderTest plugin, other;
    auto& manager = plugin.processor.presetManager;
    ASSERT_EQ (manager.getNumPresets(), static_cast<int> (cases.size()) + 1) << "one is no preset";

    for (const auto& preset : manager.getPresets())
    {
        SCOPED_TRACE (preset.name.toStdString());
        ASSERT_TRUE (manager.loadPreset (preset.index));
        const auto tree = plugin.processor.parameters.copyState();
        const auto block = plugin.capture();

        other.moveEverything();
        other.restore (block);
        EXPECT_EQ (other.values(), plugin.values());
        EXPECT_EQ (other.get ("gain_single"), preset.index == 0 ? 0.0 : 9.0);
        EXPECT_EQ (other.processor.getCurrentProgram(), preset.index);

        const auto restored = other.processor.parameters.copyState();
        EXPECT_EQ (restored["a62"] == tree["a62"] && restored["description"] == tree["description"]
                       && restored.getNumChildren() == tree.getNumChildren(),
                   ! tooMuch.contains (preset.name));

        // The same holds for a preset that is saved from there.
        manager.finishSaving (config.base.getChildFile ("Saved.tpre"),
                              manager.makePresetText ("New", "B", "Ann"));
        EXPECT_EQ (plugin.processor.toastManager.toasts.getLast()->text, "Preset saved");
        plugin.processor.toastManager.toasts.clear();
    }
}
} // namespace
