#include "presets/PresetManager.h"

#include "core/OrvoAudioProcessor.h"
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

std::string join (const juce::StringArray& texts)
{
    return texts.joinIntoString ("|").toStdString();
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
    OrvoAudioProcessor& start()
    {
        processor = std::make_unique<OrvoAudioProcessor>();
        return *processor;
    }

    double gain() const
    {
        return static_cast<double> (processor->parameters.getRawParameterValue ("gain_single")->load());
    }

    std::string toasts() const
    {
        return join (processor->toastManager.toasts, [] (const auto* toast) { return toast->text; });
    }

    std::string listed() const
    {
        return join (processor->presetManager.getPresets(), [] (const auto& one) { return one.name; });
    }

    std::string current() const { return processor->presetManager.getCurrentPreset().name.toStdString(); }

    TemporaryConfig config;
    std::unique_ptr<OrvoAudioProcessor> processor;
};

struct Recorder final : tessarin::PresetManager::Listener
{
    void presetSaved (tessarin::Preset one) override { calls.add ("saved " + one.name); }

    void presetLoaded (tessarin::Preset one) override { calls.add ("loaded " + one.name); }

    juce::StringArray calls;
};

TEST_F (Presets, MakeTheListThatTheFoldersAllow)
{
    start();
    auto& manager = processor->presetManager;
    EXPECT_EQ (manager.factoryFolder, config.preset ("Factory"));
    EXPECT_EQ (manager.userFolder, config.preset ("User"));
    EXPECT_EQ (listed(), "");
    EXPECT_EQ (processor->getNumPrograms(), 0);
    EXPECT_FALSE (manager.loadPreset (0));
    EXPECT_EQ (processor->getProgramName (0), "");
    EXPECT_EQ (toasts(), "ERROR: No factory presets found! Please reinstall the plugin.");
    EXPECT_FALSE (config.preset ("").exists()) << "a scan makes no folder";

    // Without factory folder the first user preset is entry 0, and loading it gives the default patch.
    config.addPreset ("User/Loud.tpre", preset());
    start().parameters.getParameter ("gain_single")->setValueNotifyingHost (0.7f);
    EXPECT_EQ (listed(), "Loud");
    EXPECT_EQ (current(), "Loud");
    EXPECT_TRUE (processor->presetManager.loadPreset (0));
    EXPECT_EQ (gain(), 0.0);

    config.preset ("Factory").createDirectory();
    start();
    EXPECT_EQ (listed(), "Initial Patch|Loud");
    EXPECT_EQ (current(), "Initial Patch");
    EXPECT_EQ (processor->toastManager.toasts.size(), 1) << "the initial patch is no file";

    // A folder that is kept elsewhere, as with a synchronised one.
    config.file ("elsewhere").createDirectory();
    config.preset ("User/Loud.tpre").copyFileTo (config.file ("elsewhere/Far.tpre"));
    config.file ("elsewhere").createSymbolicLink (config.preset ("User/Linked"), false);
    start();
    EXPECT_EQ (listed(), "Initial Patch|Loud|Far");
    config.preset ("User/Linked").deleteFile();
    start();

    const auto first = processor->presetManager.getPresets()[0];
    EXPECT_TRUE (first.factory && first.path.isEmpty());
    EXPECT_EQ (first.author, "Tessarin");
    EXPECT_EQ (first.description, "A blank patch");
    EXPECT_EQ (join (first.categories), "Tools");

    config.addPreset ("Factory/broken.tpre", "<");
    EXPECT_EQ (start().toastManager.toasts.size(), 0) << "any file was seen";
    EXPECT_EQ (listed(), "Initial Patch|Loud");
}

TEST_F (Presets, AreSortedByKindAndCodePoint)
{
    for (const auto* path :
         { "zeta", "Alpha", "beta", "Zeta", "Aaa/in", "drums/one", "Drums Loud/kick", "Drums Loud/deep/x" })
        config.addPreset ("Factory/" + String (path) + ".tpre", preset());

    config.addPreset ("User/a.b.tpre", preset());
    config.addPreset ("User/.tpre", preset());
    config.addPreset ("User/Initial Patch.tpre", preset());
    config.addPreset ("User/A/z.tpre", preset());
    const auto& tree = start().presetManager.getPresetTree();

    EXPECT_EQ (namesIn (tree), "Factory/|User/");
    EXPECT_EQ (namesIn (tree.getChild (0)), "Initial Patch|Alpha|Zeta|beta|zeta|Aaa/|Drums Loud/|drums/");
    EXPECT_EQ (namesIn (tree.getChildWithName ("f_factory").getChildWithName ("f_drums_loud")), "kick|deep/");
    EXPECT_EQ (namesIn (tree.getChild (1)), "Initial Patch||a.b|A/") << "nothing before the dot";

    EXPECT_EQ (listed(), "Initial Patch|Alpha|Zeta|beta|zeta|in|kick|x|one|Initial Patch||a.b|z");

    for (auto i = 0; i < processor->getNumPrograms(); ++i)
    {
        const auto one = processor->presetManager.getPresets()[i];
        EXPECT_EQ (one.index, i);
        EXPECT_EQ (one.factory, i < 9);
        EXPECT_EQ (processor->getProgramName (i), one.name);
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
    start();

    const auto bare = processor->presetManager.getPresets()[0],
               one = processor->presetManager.getPresets()[1];
    EXPECT_EQ (one.description, "Hot & loud");
    EXPECT_EQ (join (one.categories), "|B|a|b") << "by code point";
    EXPECT_EQ (one.path, config.preset ("User/Set/Low/one.tpre").getFullPathName());
    EXPECT_FALSE (one.factory);
    EXPECT_EQ (bare.author + bare.description, "");

    const auto user = processor->presetManager.getPresetTree().getChild (1);
    const auto set = user.getChildWithName ("f_set");
    EXPECT_EQ (set["description"].toString(), "Low things") << "each folder on the way takes the deepest one";
    EXPECT_EQ (set.getChild (0)["description"].toString(), "Low things");
    EXPECT_EQ (set.getChild (0).getChild (0)["categories"].toString(), "b, B, a,");
    EXPECT_FALSE (user.hasProperty ("description"));
}

TEST_F (Presets, LeaveOutWhatIsNoPreset)
{
    const std::vector<std::pair<const char*, String>> files {
        { "capital", preset ("", "Orvo") },
        { "pivotstate", preset ("", "pivotstate") },
        { "foreign", preset ("", "other") },
        { "unclosed", "<orvo>" },
    };

    for (const auto& [name, text] : files)
        config.addPreset ("User/" + String (name) + ".tpre", text);

    config.addPreset ("User/other.txt", preset());
    config.addPreset ("User/good.tpre", preset());
    start();
    EXPECT_EQ (listed(), "good");
    EXPECT_EQ (processor->toastManager.toasts.size(), 1) << "only about the factory presets";
}

TEST_F (Presets, LoadWithTheirAsymmetries)
{
    config.preset ("Factory").createDirectory();
    const auto file = config.addPreset ("User/Loud.tpre", preset());
    auto& manager = start().presetManager;
    processor->toastManager.toasts.clear();
    Recorder recorder;
    manager.addListener (&recorder);
    constexpr auto kept = -9.0;

    const auto expectLoad = [&] (int index, const char* name, double expectedGain, const char* toast = "")
    {
        SCOPED_TRACE (testing::Message() << index << " " << file.loadFileAsString());
        manager.loadPreset (0);
        processor->parameters.getParameter ("gain_single")->setValueNotifyingHost (0.25f);
        processor->toastManager.toasts.clear();
        recorder.calls.clear();
        const auto isLoaded = expectedGain > kept;
        EXPECT_EQ (manager.loadPreset (index), isLoaded);
        EXPECT_EQ (current(), name);
        EXPECT_EQ (gain(), expectedGain);
        EXPECT_EQ (toasts(), toast);
        EXPECT_EQ (join (recorder.calls), isLoaded ? "loaded " + std::string (name) : "");
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
    processor->toastManager.toasts.clear();

    for (const auto index : { 2, -1 })
        EXPECT_EQ (processor->getProgramName (index), "");

    EXPECT_EQ (toasts(), "ERROR: Invalid preset index: 2|ERROR: Invalid preset index: -1");

    // The folders are not watched, and a rescan leaves the current preset alone.
    processor->setCurrentProgram (1);
    config.addPreset ("User/A.tpre", preset());
    EXPECT_EQ (processor->getNumPrograms(), 2);
    processor->presetManager.loadPresets();
    EXPECT_EQ (processor->getProgramName (1), "A");
    EXPECT_EQ (processor->getCurrentProgram(), 1);
    EXPECT_EQ (current(), "Loud");

    // With an empty list entry 0 is what was current.
    config.preset ("").deleteRecursively();
    processor->presetManager.loadPresets();
    EXPECT_EQ (current(), "Loud");
    EXPECT_EQ (processor->getProgramName (0), "Loud");
}
} // namespace
