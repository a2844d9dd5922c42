#include "core/PluginUnderTest.h"
#include "support/ResourceLimit.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

namespace
{
using juce::File;
using juce::String;

struct PresetSaving : testing::Test, tessarin::PresetManager::Listener
{
    PresetSaving()
    {
        plugin.takeToasts();
        processor.presetManager.addListener (this);
    }

    ~PresetSaving() override { processor.presetManager.removeListener (this); }

    void presetSaved (tessarin::Preset preset) override { saved.add (preset.name); }

    void presetLoaded (tessarin::Preset) override {}

    void save (const File& chosen)
    {
        auto& manager = processor.presetManager;
        manager.finishSaving (chosen, manager.makePresetText ("Hot & \"loud\"\nor so", "Drums,Bass", "Ann"));
    }

    TemporaryConfig config;
    const File loud =
        config.addPreset ("User/Loud.tpre", stateText (entry ("gain_single", "9"), "author=\"Bob\""));
    const bool hasFactory = config.preset ("Factory").createDirectory().wasOk();
    PluginUnderTest plugin;
    OrvoAudioProcessor& processor = plugin.processor;
    juce::StringArray saved;
};

TEST_F (PresetSaving, WritesTheStateWithItsTexts)
{
    save (config.preset ("User/New.tpre"));
    EXPECT_TRUE (config.preset ("User/New.tpre").loadFileAsString().contains ("version=\"1.0.1\""))
        << "no host has asked for a state yet";

    processor.presetManager.loadPreset (1);
    EXPECT_FALSE (plugin.capture().isEmpty());
    ASSERT_TRUE (processor.parameters.state.hasProperty ("preset_path"));
    save (config.preset ("User/New.tpre"));

    // The factory bank's tests hold the file's form.
    const auto text = config.preset ("User/New.tpre").loadFileAsString();
    EXPECT_FALSE (text.contains ("preset_path"));
    EXPECT_FALSE (text.contains ("Bob"));
    EXPECT_TRUE (text.contains ("version=\"1.0.1\"") && text.contains ("categories=\"Drums,Bass\""));
    EXPECT_TRUE (processor.parameters.state.hasProperty ("preset_path")) << "the live state stays";
}

TEST_F (PresetSaving, MakesTheNewPresetCurrentWithoutTouchingTheParameters)
{
    plugin.set ("gain_single", 9.0);
    save (config.preset ("User/Abc"));

    const auto preset = processor.presetManager.getCurrentPreset();
    EXPECT_EQ (preset.name, "Abc");
    EXPECT_EQ (preset.path, config.preset ("User/Abc.tpre").getFullPathName()) << "the extension is added";
    EXPECT_EQ (preset.index, 1) << "after the rescan";
    EXPECT_EQ (preset.author, "Ann");
    EXPECT_EQ (preset.description, "Hot & \"loud\"\nor so");
    EXPECT_EQ (processor.getNumPrograms(), 3);
    EXPECT_EQ (plugin.get ("gain_single"), 9.0);
    EXPECT_EQ (saved, juce::StringArray { "Abc" });
    EXPECT_EQ (processor.toastManager.toasts.getLast()->type, tessarin::toastSuccess);
    EXPECT_EQ (plugin.takeToasts(), "Preset saved");
    EXPECT_EQ (config.preset ("User").getNumberOfChildFiles (File::findFiles), 2)
        << "no temporary file stays";

    plugin.set ("gain_single", -9.0);
    save (config.preset ("User/Abc.tpre"));
    EXPECT_EQ (processor.getNumPrograms(), 3) << "overwritten";
    processor.presetManager.loadPreset (0);
    processor.presetManager.loadPreset (1);
    EXPECT_EQ (plugin.get ("gain_single"), -9.0);
}

TEST_F (PresetSaving, FindsTheNewPresetByEveryRoadToItsFolder)
{
    const auto user = config.preset ("User"), real = config.base.getChildFile ("Real");
    ASSERT_TRUE (user.moveFileTo (real) && real.createSymbolicLink (user, false));
    File (real.getFullPathName() + "/~Sub").createDirectory();

    // A dialog gives either path, and a name that begins with a tilde is nobody's home.
    for (const auto& [folder, name] :
         { std::pair { real, "Real" }, std::pair { user, "Linked" }, std::pair { real, "~root" },
           std::pair { File (user.getFullPathName() + "/~Sub"), "~Bare" } })
    {
        save (File (folder.getFullPathName() + "/" + name));
        const auto preset = processor.presetManager.getCurrentPreset();
        EXPECT_EQ (preset.name, name);
        EXPECT_TRUE (preset.path.startsWith (user.getFullPathName())) << "as the scan found it";
        EXPECT_EQ (plugin.takeToasts(), "Preset saved") << name;
    }

    save (config.base.getChildFile ("Elsewhere.tpre"));
    EXPECT_TRUE (config.base.getChildFile ("Elsewhere.tpre").existsAsFile());
    EXPECT_EQ (plugin.takeToasts(), "Preset saved");
    EXPECT_EQ (saved.joinIntoString (" "), "Real Linked ~root ~Bare ~Bare") << "no preset of the list";
}

TEST_F (PresetSaving, LoadsNoOtherPresetThroughAHostThatKnowsTheFirstProgramsOnly)
{
    // The value of VST3's program parameter goes into the steps that it had at first, and comes back.
    const auto lastProgram = processor.getNumPrograms() - 1;
    auto program = 0;
    const HostListener host (processor,
                             [&] (const auto& details)
                             {
                                 if (! details.programChanged)
                                     return;

                                 program = juce::jmin (lastProgram, processor.getCurrentProgram());

                                 if (program != processor.getCurrentProgram())
                                     processor.setCurrentProgram (program);
                             });
    plugin.set ("gain_single", -9.0);

    for (const auto* name : { "User/Zulu.tpre", "User/Zulu.tpre", "User/Zoo.tpre" })
    {
        save (config.preset (name));
        EXPECT_EQ (plugin.get ("gain_single"), -9.0) << name;
        EXPECT_EQ (processor.presetManager.getCurrentPreset().path, config.preset (name).getFullPathName());
    }

    EXPECT_EQ (program, 0);

    // What the wrapper does at a restore, if it comes later than the quiet time.
    save (config.preset ("User/Zulu.tpre"));
    processor.setCurrentProgram (lastProgram);
    EXPECT_EQ (plugin.get ("gain_single"), -9.0);

    save (config.preset ("User/Abc.tpre"));
    EXPECT_EQ (program, 1) << "one that it has a number for";
}

TEST_F (PresetSaving, LosesNothingWhenItFailsOrIsCancelled)
{
    const auto before = loud.loadFileAsString();

    const auto expectNothingChanged = [&] (const String& toast, const char* name)
    {
        EXPECT_EQ (plugin.takeToasts(), toast) << name;
        EXPECT_EQ (loud.loadFileAsString(), before) << name;
        EXPECT_EQ (processor.getNumPrograms(), 2) << name;
        EXPECT_EQ (processor.getCurrentProgram(), 0) << name;
        EXPECT_TRUE (saved.isEmpty()) << name;
        EXPECT_EQ (config.preset ("User").getNumberOfChildFiles (File::findFiles), 1) << name;
    };

    save (File());
    expectNothingChanged ({}, "cancelled");

    for (const auto& chosen : { loud.getChildFile ("below a file.tpre"), loud.withFileExtension (""),
                                config.preset ("User/.tpre") })
    {
        save (chosen);
        expectNothingChanged ("ERROR: Couldn't save preset!", chosen.getFileName().toRawUTF8());
    }

    EXPECT_TRUE (config.log().contains ("file exists: " + loud.getFullPathName() + "\r\n"))
        << "nobody was asked";

    auto& manager = processor.presetManager;
    manager.finishSaving (loud, manager.makePresetText (String::repeatedString ("x", 9000000), {}, {}));
    expectNothingChanged ("ERROR: Couldn't save preset!", "too long to be read again");

    for (const rlim_t room : { 0u, 1000u })
    {
        {
            const ResourceLimit disk (RLIMIT_FSIZE, room);
            save (loud);
        }

        expectNothingChanged ("ERROR: Couldn't save preset!", room == 0 ? "full disk" : "nearly full disk");
    }
}
} // namespace
