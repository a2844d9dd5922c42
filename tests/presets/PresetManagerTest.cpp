#include "presets/PresetManager.h"

#include "core/PluginUnderTest.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using juce::String;

String preset (const char* attributes = "", const char* tag = "orvo")
{
    return stateText (entry ("gain_single", "9"), attributes, tag);
}

/** Names in one text, so that lists compare as texts. */
template <typename Items, typename NameOf>
std::string join (const Items& items, NameOf nameOf)
{
    juce::StringArray names;

    for (const auto& item : items)
        names.add (nameOf (item));

    return names.joinIntoString ("|").toStdString();
}

/** A folder's children; folders end in a slash. */
std::string namesIn (const juce::ValueTree& node)
{
    return join (node,
                 [] (const juce::ValueTree& child)
                 {
                     return child["name"].toString()
                            + (child.hasType ("preset") ? String() : child["folder_name"].toString() + "/");
                 });
}

struct Presets : testing::Test
{
    /** After the folders are laid out. */
    tessarin::PresetManager& start()
    {
        plugin = std::make_unique<PluginUnderTest>();
        return manager();
    }

    tessarin::PresetManager& manager() const { return plugin->processor.presetManager; }

    std::string listed() const
    {
        return join (manager().getPresets(), [] (const auto& one) { return one.name; });
    }

    String current() const { return manager().getCurrentPreset().name; }

    TemporaryConfig config;
    std::unique_ptr<PluginUnderTest> plugin;
};

struct Recorder final : tessarin::PresetManager::Listener
{
    void presetSaved (tessarin::Preset one) override { calls.add ("saved " + one.name); }

    void presetLoaded (tessarin::Preset one) override { calls.add ("loaded " + one.name); }

    juce::StringArray calls;
};

TEST_F (Presets, MakeTheListThatTheFoldersAllow)
{
    const String missing ("ERROR: No factory presets found! Please reinstall the plugin.");
    EXPECT_EQ (start().factoryFolder, config.preset ("Factory"));
    EXPECT_EQ (manager().userFolder, config.preset ("User"));
    EXPECT_EQ (listed(), "");
    EXPECT_EQ (plugin->processor.getNumPrograms(), 0);
    EXPECT_FALSE (manager().loadPreset (0));
    EXPECT_EQ (plugin->processor.getProgramName (0), "");
    EXPECT_EQ (plugin->takeToasts(), missing);
    EXPECT_FALSE (config.preset ("").exists()) << "a scan makes no folder";

    // Without factory folder the first user preset is entry 0, and loading it gives the default patch.
    config.addPreset ("User/Loud.tpre", preset());
    start();
    plugin->set ("gain_single", 7.0);
    EXPECT_EQ (listed(), "Loud");
    EXPECT_EQ (current(), "Loud");
    EXPECT_TRUE (manager().loadPreset (0));
    EXPECT_EQ (plugin->get ("gain_single"), 0.0);

    config.preset ("Factory").createDirectory();
    start();
    EXPECT_EQ (listed(), "Initial Patch|Loud");
    EXPECT_EQ (current(), "Initial Patch");
    EXPECT_EQ (plugin->takeToasts(), missing) << "the initial patch is no file";

    // A folder that is kept elsewhere, as with a synchronised one.
    config.file ("elsewhere").createDirectory();
    config.preset ("User/Loud.tpre").copyFileTo (config.file ("elsewhere/Far.tpre"));
    config.file ("elsewhere").createSymbolicLink (config.preset ("User/Linked"), false);
    start();
    EXPECT_EQ (listed(), "Initial Patch|Loud|Far");
    config.preset ("User/Linked").deleteFile();

    const auto first = start().getPresets()[0];
    EXPECT_TRUE (first.factory && first.path.isEmpty());
    EXPECT_EQ (first.author, "Tessarin");
    EXPECT_EQ (first.description, "A blank patch");
    EXPECT_EQ (first.categories.joinIntoString ("|"), "Tools");

    config.addPreset ("Factory/broken.tpre", "<");
    start();
    EXPECT_EQ (plugin->takeToasts(), "") << "any file was seen";
    EXPECT_EQ (listed(), "Initial Patch|Loud");
}

TEST_F (Presets, AreSortedByKindAndCodePointAndNothingElseIsListed)
{
    for (const auto* path :
         { "Factory/zeta", "Factory/Alpha", "Factory/beta", "Factory/Zeta", "Factory/Aaa/in",
           "Factory/drums/one", "Factory/Drums Loud/kick", "Factory/Drums Loud/deep/x", "User/a.b", "User/",
           "User/Initial Patch", "User/A/z" })
        config.addPreset (String (path) + ".tpre", preset());

    for (const auto* tag : { "Orvo", "pivotstate", "other" })
        config.addPreset ("User/" + String (tag) + ".tpre", preset ("", tag));

    config.addPreset ("User/unclosed.tpre", "<orvo>");
    config.addPreset ("User/other.txt", preset());
    const auto& tree = start().getPresetTree();
    EXPECT_EQ (plugin->takeToasts(), "");

    EXPECT_EQ (namesIn (tree), "Factory/|User/");
    EXPECT_EQ (namesIn (tree.getChild (0)), "Initial Patch|Alpha|Zeta|beta|zeta|Aaa/|Drums Loud/|drums/");
    EXPECT_EQ (namesIn (tree.getChildWithName ("f_factory").getChildWithName ("f_drums_loud")), "kick|deep/");
    EXPECT_EQ (namesIn (tree.getChild (1)), "Initial Patch||a.b|A/") << "nothing before the dot";

    EXPECT_EQ (listed(), "Initial Patch|Alpha|Zeta|beta|zeta|in|kick|x|one|Initial Patch||a.b|z");

    for (auto i = 0; i < plugin->processor.getNumPrograms(); ++i)
    {
        const auto one = manager().getPresets()[i];
        EXPECT_EQ (one.index, i);
        EXPECT_EQ (one.factory, i < 9);
        EXPECT_EQ (plugin->processor.getProgramName (i), one.name);
    }

    EXPECT_EQ (static_cast<int> (tree.getChild (0).getChild (6).getChild (0)["preset_index"]), 6);
}

TEST_F (Presets, TakeTheirTextsFromTheFileAndItsFolder)
{
    config.addPreset (
        "User/Set/Low/one.tpre",
        preset ("name=\"other\" author=\"Ann\" categories=\"b, B, a,\" description=\"Hot &amp; loud\""));
    config.preset ("User/Set/_description.txt").replaceWithText ("Beside no file");
    config.preset ("User/Set/Low/_description.txt").replaceWithText ("Low things");
    config.addPreset ("User/bare.tpre", preset());
    config.preset ("User/_description.txt").replaceWithText ("Of no folder");

    const auto bare = start().getPresets()[0], one = manager().getPresets()[1];
    EXPECT_EQ (one.description, "Hot & loud");
    EXPECT_EQ (one.categories.joinIntoString ("|"), "|B|a|b") << "by code point";
    EXPECT_EQ (one.path, config.preset ("User/Set/Low/one.tpre").getFullPathName());
    EXPECT_FALSE (one.factory);
    EXPECT_EQ (bare.author + bare.description, "");

    const auto user = manager().getPresetTree().getChild (1);
    const auto set = user.getChildWithName ("f_set");
    EXPECT_EQ (set["description"].toString(), "Low things") << "each folder on the way takes the deepest one";
    EXPECT_EQ (set.getChild (0)["description"].toString(), "Low things");
    EXPECT_EQ (set.getChild (0).getChild (0)["categories"].toString(), "b, B, a,");
    EXPECT_FALSE (user.hasProperty ("description"));
}

TEST_F (Presets, LoadWithTheirAsymmetries)
{
    config.preset ("Factory").createDirectory();
    const auto file = config.addPreset ("User/Loud.tpre", preset());
    Recorder recorder;
    start().addListener (&recorder);
    constexpr auto kept = -9.0;

    const auto expectLoad = [&] (int index, const char* name, double expectedGain, const char* toast = "")
    {
        SCOPED_TRACE (testing::Message() << index << " " << file.loadFileAsString());
        manager().loadPreset (0);
        plugin->set ("gain_single", kept);
        plugin->takeToasts();
        recorder.calls.clear();
        const auto isLoaded = expectedGain > kept;
        EXPECT_EQ (manager().loadPreset (index), isLoaded);
        EXPECT_EQ (current(), name);
        EXPECT_EQ (plugin->get ("gain_single"), expectedGain);
        EXPECT_EQ (plugin->takeToasts(), toast);
        EXPECT_EQ (recorder.calls.joinIntoString ("|"), isLoaded ? "loaded " + String (name) : String());
    };

    expectLoad (1, "Loud", 9.0);
    expectLoad (0, "Initial Patch", 0.0);

    for (const auto index : { -1, 2, 1000000, std::numeric_limits<int>::min() })
        expectLoad (index, "Initial Patch", kept);

    // What cannot be read is selected all the same.
    for (const auto* damage : { "", "<orvo>", "<orvo><?a?>x</orvo>" })
    {
        file.replaceWithText (damage);
        expectLoad (1, "Loud", kept);
    }

    file.deleteFile();
    expectLoad (1, "Loud", kept);

    // Capitals load, although no scan lists them; others' states give the default patch.
    config.addPreset ("User/Loud.tpre", preset ("", "ORVO"));
    expectLoad (1, "Loud", 9.0);

    for (const auto* tag : { "other", "pivotstate", "pivot" })
    {
        config.addPreset ("User/Loud.tpre", preset ("", tag));
        expectLoad (1, "Loud", 0.0, "ERROR: Invalid preset");
    }
}

TEST_F (Presets, NameTheHostsPrograms)
{
    config.preset ("Factory").createDirectory();
    config.addPreset ("User/Loud.tpre", preset());
    start();
    auto& processor = plugin->processor;
    plugin->takeToasts();

    for (const auto index : { 2, -1 })
        EXPECT_EQ (processor.getProgramName (index), "");

    EXPECT_EQ (plugin->takeToasts(), "ERROR: Invalid preset index: 2|ERROR: Invalid preset index: -1");

    // The folders are not watched, and a rescan leaves the current preset alone.
    processor.setCurrentProgram (1);
    config.addPreset ("User/A.tpre", preset());
    EXPECT_EQ (processor.getNumPrograms(), 2);
    manager().loadPresets();
    EXPECT_EQ (processor.getProgramName (1), "A");
    EXPECT_EQ (processor.getCurrentProgram(), 1);
    EXPECT_EQ (current(), "Loud");

    // With an empty list entry 0 is what was current.
    config.preset ("").deleteRecursively();
    manager().loadPresets();
    EXPECT_EQ (current(), "Loud");
    EXPECT_EQ (processor.getProgramName (0), "Loud");
}
} // namespace
