#include "core/OrvoAudioProcessor.h"
#include "presets/PresetManager.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

namespace
{
using juce::File;
using juce::String;

/** No file can grow beyond this, as on a full disk. */
class FullDisk
{
public:
    explicit FullDisk (rlim_t limit)
    {
        getrlimit (RLIMIT_FSIZE, &previous);
        const rlimit smaller { limit, previous.rlim_max };
        setrlimit (RLIMIT_FSIZE, &smaller);
    }

    ~FullDisk()
    {
        setrlimit (RLIMIT_FSIZE, &previous);
        std::signal (SIGXFSZ, previousHandler);
    }

    FullDisk (const FullDisk&) = delete;
    FullDisk& operator= (const FullDisk&) = delete;

private:
    void (*previousHandler) (int) = std::signal (SIGXFSZ, SIG_IGN);
    rlimit previous {};
};

struct PresetSaving : testing::Test, tessarin::PresetManager::Listener
{
    PresetSaving()
    {
        processor.toastManager.toasts.clear();
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

    String lastToast() const
    {
        const auto* toast = processor.toastManager.toasts.getLast();
        return toast == nullptr ? String() : toast->text;
    }

    double gain() const
    {
        return static_cast<double> (processor.parameters.getRawParameterValue ("gain_single")->load());
    }

    TemporaryConfig config;
    const File loud =
        config.addPreset ("User/Loud.tpre", stateText (entry ("gain_single", "9"), "author=\"Bob\""));
    const bool hasFactory = config.preset ("Factory").createDirectory().wasOk();
    OrvoAudioProcessor processor;
    juce::StringArray saved;
};

TEST_F (PresetSaving, WritesTheStateWithItsTexts)
{
    processor.presetManager.loadPreset (1);
    juce::MemoryBlock block;
    processor.getStateInformation (block);
    ASSERT_TRUE (processor.parameters.state.hasProperty ("preset_path"));
    save (config.preset ("User/New.tpre"));

    // The factory bank's tests hold the file's form.
    const auto text = config.preset ("User/New.tpre").loadFileAsString();
    EXPECT_FALSE (text.contains ("preset_path"));
    EXPECT_FALSE (text.contains ("Bob"));
    EXPECT_TRUE (text.contains ("version=\"1.0.1\"") && text.contains ("categories=\"Drums,Bass\""));
    EXPECT_TRUE (processor.parameters.state.hasProperty ("preset_path")) << "the live state stays";
}

TEST_F (PresetSaving, HasTheVersionEvenIfNoHostEverAskedForAState)
{
    save (config.preset ("User/New.tpre"));
    EXPECT_TRUE (config.preset ("User/New.tpre").loadFileAsString().contains ("version=\"1.0.1\""));
}

TEST_F (PresetSaving, MakesTheNewPresetCurrentWithoutTouchingTheParameters)
{
    processor.parameters.getParameter ("gain_single")->setValueNotifyingHost (0.75f);
    save (config.preset ("User/Abc"));

    const auto preset = processor.presetManager.getCurrentPreset();
    EXPECT_EQ (preset.name, "Abc");
    EXPECT_EQ (preset.path, config.preset ("User/Abc.tpre").getFullPathName()) << "the extension is added";
    EXPECT_EQ (preset.index, 1) << "after the rescan";
    EXPECT_EQ (preset.author, "Ann");
    EXPECT_EQ (preset.description, "Hot & \"loud\"\nor so");
    EXPECT_EQ (processor.getNumPrograms(), 3);
    EXPECT_EQ (gain(), 9.0);
    EXPECT_EQ (saved, juce::StringArray { "Abc" });
    EXPECT_EQ (lastToast(), "Preset saved");
    EXPECT_EQ (processor.toastManager.toasts.getLast()->type, tessarin::toastSuccess);
    EXPECT_EQ (config.preset ("User").getNumberOfChildFiles (File::findFiles), 2)
        << "no temporary file stays";

    processor.parameters.getParameter ("gain_single")->setValueNotifyingHost (0.25f);
    save (config.preset ("User/Abc.tpre"));
    EXPECT_EQ (processor.getNumPrograms(), 3) << "overwritten";
    processor.presetManager.loadPreset (0);
    processor.presetManager.loadPreset (1);
    EXPECT_EQ (gain(), -9.0);
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
        EXPECT_EQ (lastToast(), "Preset saved") << name;
    }

    save (config.base.getChildFile ("Elsewhere.tpre"));
    EXPECT_TRUE (config.base.getChildFile ("Elsewhere.tpre").existsAsFile());
    EXPECT_EQ (lastToast(), "Preset saved");
    EXPECT_EQ (saved.joinIntoString (" "), "Real Linked ~root ~Bare ~Bare") << "no preset of the list";
}

TEST_F (PresetSaving, LoadsNoOtherPresetThroughAHostThatKnowsTheFirstProgramsOnly)
{
    struct Host final : juce::AudioProcessorListener
    {
        explicit Host (juce::AudioProcessor& p) : processor (p) { processor.addListener (this); }

        ~Host() override { processor.removeListener (this); }

        void audioProcessorParameterChanged (juce::AudioProcessor*, int, float) override {}

        /** The value of VST3's program parameter goes into the steps that it had at first, and comes back. */
        void audioProcessorChanged (juce::AudioProcessor*, const ChangeDetails& details) override
        {
            if (! details.programChanged)
                return;

            program = juce::jmin (lastProgram, processor.getCurrentProgram());

            if (program != processor.getCurrentProgram())
                processor.setCurrentProgram (program);
        }

        juce::AudioProcessor& processor;
        const int lastProgram = processor.getNumPrograms() - 1;
        int program = 0;
    };

    Host host (processor);
    processor.parameters.getParameter ("gain_single")->setValueNotifyingHost (0.25f);
    const auto gainToKeep = gain();

    for (const auto* name : { "User/Zulu.tpre", "User/Zulu.tpre", "User/Zoo.tpre" })
    {
        save (config.preset (name));
        EXPECT_EQ (gain(), gainToKeep) << name;
        EXPECT_EQ (processor.presetManager.getCurrentPreset().path, config.preset (name).getFullPathName());
    }

    EXPECT_EQ (host.program, 0);

    // What the wrapper does at a restore, if it comes later than the quiet time.
    save (config.preset ("User/Zulu.tpre"));
    processor.setCurrentProgram (host.lastProgram);
    EXPECT_EQ (gain(), gainToKeep);

    save (config.preset ("User/Abc.tpre"));
    EXPECT_EQ (host.program, 1) << "one that it has a number for";
}

TEST_F (PresetSaving, LosesNothingWhenItFailsOrIsCancelled)
{
    const auto before = loud.loadFileAsString();

    const auto expectNothingChanged = [&] (const String& toast, const char* name)
    {
        EXPECT_EQ (lastToast(), toast) << name;
        EXPECT_EQ (loud.loadFileAsString(), before) << name;
        EXPECT_EQ (processor.getNumPrograms(), 2) << name;
        EXPECT_EQ (processor.getCurrentProgram(), 0) << name;
        EXPECT_TRUE (saved.isEmpty()) << name;
        EXPECT_EQ (config.preset ("User").getNumberOfChildFiles (File::findFiles), 1) << name;
        processor.toastManager.toasts.clear();
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
            const FullDisk disk (room);
            save (loud);
        }

        expectNothingChanged ("ERROR: Couldn't save preset!", room == 0 ? "full disk" : "nearly full disk");
    }
}
} // namespace
