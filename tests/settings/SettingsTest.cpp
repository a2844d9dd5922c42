#include "settings/Settings.h"

#include "core/OrvoAudioProcessor.h"
#include "support/ReadOnly.h"
#include "support/ResourceLimit.h"
#include "support/Sanitizers.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <tuple>

namespace
{
using juce::String;

TEST (Settings, AreNotWrittenBeforeTheyChange)
{
    const TemporaryConfig config;

    {
        const OrvoAudioProcessor processor;
        EXPECT_EQ (processor.settings.getFile(), config.file ("settings.settings"));
        EXPECT_EQ (processor.settings.getDoubleValue ("scale", 1.0), 1.0);
        EXPECT_EQ (processor.settings.getValue ("theme", "Default"), "Default");
        EXPECT_TRUE (config.file ("log.log").existsAsFile());
    }

    EXPECT_FALSE (config.file ("settings.settings").exists());
    EXPECT_EQ (config.file ("").getNumberOfChildFiles (juce::File::findFilesAndDirectories), 1);

    {
        OrvoAudioProcessor processor;
        processor.settings.setValue ("theme", "Ice");
        processor.settings.setValue ("scale", 1.5);
        EXPECT_FALSE (config.file ("settings.settings").exists()) << "only after a while";
    }

    EXPECT_EQ (config.file ("settings.settings").loadFileAsString(),
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n\r\n<PROPERTIES>\r\n"
               "  <VALUE name=\"theme\" val=\"Ice\"/>\r\n  <VALUE name=\"scale\" val=\"1.5\"/>\r\n"
               "</PROPERTIES>\r\n");
}

TEST (Settings, FallBackToTheDefaultsWhenTheFileIsDamaged)
{
    const TemporaryConfig config;
    const auto file = config.file ("settings.settings"), aside = config.file ("settings.damaged");
    file.getParentDirectory().createDirectory();

    for (const auto& [text, isXml] :
         { std::pair { "", false },
           { "scale=2", false },
           { "<PROPERTIES>", false },
           { "<PROPERTIES><?a?>x</PROPERTIES>", false },
           { "<PROPERTIES a=\"\xf0", false },
           { "<OTHER><VALUE name=\"scale\" val=\"2\"/></OTHER>", true },
           { "<PROPERTIES><VALUE name=\"Scale\" val=\"2\"/></PROPERTIES>", true } })
    {
        aside.deleteFile();
        file.replaceWithData (text, std::strlen (text));
        EXPECT_EQ (OrvoAudioProcessor().settings.getDoubleValue ("scale", 1.0), 1.0) << text;
        EXPECT_EQ (file.existsAsFile(), isXml) << text;
        EXPECT_EQ ((isXml ? file : aside).getSize(), static_cast<juce::int64> (std::strlen (text)))
            << "nothing is lost";
    }
}

String withValues (const char* scale, const char* prologue = "")
{
    return String (prologue) + "<PROPERTIES><VALUE name=\"scale\" val=\"" + scale + "\"/></PROPERTIES>";
}

TEST (Settings, LeaveAFileAloneThatCannotBeReadJustNow)
{
    const TemporaryConfig config;
    const auto file = config.file ("settings.settings"), folder = file.getParentDirectory();
    folder.createDirectory();
    file.replaceWithText (withValues ("1.5"));

    const auto expectDefaultsThenTheFile = [&] (const char* reason, const auto& makeUnreadable)
    {
        auto outOfReach = makeUnreadable();
        OrvoAudioProcessor processor;
        EXPECT_EQ (processor.settings.getDoubleValue ("scale", 1.0), 1.0) << reason;
        processor.settings.refresh();
        outOfReach.reset();

        EXPECT_EQ (file.loadFileAsString(), withValues ("1.5")) << reason;
        processor.settings.refresh();
        EXPECT_EQ (processor.settings.getDoubleValue ("scale", 1.0), 1.5) << reason;
    };

    // The undefined-behaviour sanitizer needs descriptors itself.
    if (! isAddressSanitized)
        expectDefaultsThenTheFile ("no descriptor",
                                   [] { return std::make_unique<ResourceLimit> (RLIMIT_NOFILE, 0); });

    // The folder is everybody's, so that nothing but the rule keeps the file in its place.
    chmod (folder.getFullPathName().toRawUTF8(), 0777);
    expectDefaultsThenTheFile (
        "no permission",
        [&] { return std::make_unique<ReadOnly> (std::initializer_list<juce::File> { file }, 0); });
}

TEST (Settings, AreNotReadFromADamagedFileThatCannotBeMoved)
{
    const TemporaryConfig config;
    const auto file = config.file ("settings.settings"), aside = config.file ("settings.damaged");
    const auto damaged = withValues ("2.0", "<!DOCTYPE PROPERTIES>");
    aside.getChildFile ("in the way").create();
    file.replaceWithText (damaged);

    {
        OrvoAudioProcessor processor;
        auto& settings = processor.settings;
        settings.refresh();
        EXPECT_EQ (settings.getDoubleValue ("scale", 1.0), 1.0) << "JUCE's parser would take it";

        settings.setValue ("scale", 1.25);
        settings.saveOrLog();
        EXPECT_EQ (settings.getDoubleValue ("scale", 1.0), 1.25) << "in force without a file";
        EXPECT_TRUE (config.log().contains ("Unable to save the custom settings..."));
    }

    EXPECT_EQ (file.loadFileAsString(), damaged);

    // A file may turn bad while a window is open.
    aside.deleteRecursively();
    file.replaceWithText (withValues ("1.5"));
    OrvoAudioProcessor processor;
    aside.getChildFile ("in the way").create();
    file.replaceWithText (damaged);
    processor.settings.refresh();
    EXPECT_EQ (processor.settings.getDoubleValue ("scale", 1.0), 1.5);
}

TEST (Settings, ThatCouldNotBeSavedGiveWayToANewerFile)
{
    // Whether another instance saves, and whether the failing one looks at the file before it ends.
    for (const auto& [otherSaves, refreshes, last] :
         { std::tuple { false, false, 2.0 }, { true, true, 1.25 }, { true, false, 0.75 } })
    {
        for (const auto hasFile : { true, false })
        {
            SCOPED_TRACE (testing::Message() << hasFile << " " << last);
            const TemporaryConfig config;
            const auto file = config.file ("settings.settings");
            file.getParentDirectory().createDirectory();

            if (hasFile)
                file.replaceWithText (withValues ("1.5"));

            auto failing = std::make_unique<OrvoAudioProcessor>();
            auto& settings = failing->settings;

            {
                const ReadOnly readOnly { file.getParentDirectory() };
                settings.setValue ("scale", 2.0);
                settings.saveOrLog();
                settings.refresh();
            }

            EXPECT_EQ (settings.getDoubleValue ("scale"), 2.0) << "in force";

            if (otherSaves)
            {
                OrvoAudioProcessor other;
                other.settings.setValue ("scale", 0.75);
                other.settings.saveOrLog();
            }

            if (refreshes)
            {
                settings.refresh();
                EXPECT_EQ (settings.getDoubleValue ("scale"), 0.75);
                EXPECT_FALSE (settings.needsToBeSaved());

                settings.setValue ("scale", 1.25);
                settings.refresh();
                EXPECT_EQ (settings.getDoubleValue ("scale"), 1.25) << "a new value waits to be saved";
            }

            failing.reset();
            EXPECT_EQ (OrvoAudioProcessor().settings.getDoubleValue ("scale"), last);
        }
    }
}

TEST (Settings, LieWhereTheEnvironmentSays)
{
    const TemporaryConfig config;
    const auto home = juce::File::getSpecialLocation (juce::File::userHomeDirectory);

    for (const auto& [value, base] : { std::pair { config.base.getFullPathName(), config.base },
                                       { String(), home.getChildFile (".config") } })
    {
        setenv ("XDG_CONFIG_HOME", value.toRawUTF8(), 1);
        EXPECT_EQ (tessarin::Settings::getFile(), base.getChildFile ("Tessarin/Orvo/settings.settings"));
    }

    unsetenv ("XDG_CONFIG_HOME");
    EXPECT_EQ (tessarin::Settings::getFile(), home.getChildFile (".config/Tessarin/Orvo/settings.settings"));
}
} // namespace
