#include "settings/Settings.h"

#include "core/OrvoAudioProcessor.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <cstring>

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

TEST (Settings, ReachOtherInstancesThroughTheFile)
{
    const TemporaryConfig config;
    OrvoAudioProcessor first, second;

    first.settings.setValue ("scale", 0.75);
    EXPECT_TRUE (first.settings.saveIfNeeded());
    EXPECT_EQ (second.settings.getDoubleValue ("scale", 1.0), 1.0);
    EXPECT_TRUE (second.settings.reload());
    EXPECT_EQ (second.settings.getDoubleValue ("scale", 1.0), 0.75);

    second.settings.setValue ("scale", 2.0);
    second.settings.saveIfNeeded();
    EXPECT_EQ (OrvoAudioProcessor().settings.getDoubleValue ("scale", 1.0), 2.0) << "the last save wins";
}

TEST (Settings, FallBackToTheDefaultsWhenTheFileIsDamaged)
{
    const TemporaryConfig config;
    const auto file = config.file ("settings.settings"), aside = config.file ("settings.damaged");
    file.getParentDirectory().createDirectory();

    struct Case
    {
        const char* text;
        bool isXml;
    };

    for (const auto& [text, isXml] :
         { Case { "", false }, Case { "scale=2", false }, Case { "<PROPERTIES>", false },
           Case { "<PROPERTIES><?a?>x</PROPERTIES>", false }, Case { "<PROPERTIES a=\"\xf0", false },
           Case { "<OTHER><VALUE name=\"scale\" val=\"2\"/></OTHER>", true },
           Case { "<PROPERTIES><VALUE name=\"Scale\" val=\"2\"/></PROPERTIES>", true } })
    {
        aside.deleteFile();
        file.replaceWithData (text, std::strlen (text));
        EXPECT_EQ (OrvoAudioProcessor().settings.getDoubleValue ("scale", 1.0), 1.0) << text;
        EXPECT_EQ (file.existsAsFile(), isXml) << text;
        EXPECT_EQ ((isXml ? file : aside).getSize(), static_cast<juce::int64> (std::strlen (text)))
            << "nothing is lost";
    }

    file.deleteFile();
    file.createDirectory();
    OrvoAudioProcessor processor;
    processor.settings.setValue ("scale", 1.25);
    EXPECT_FALSE (processor.settings.saveIfNeeded());
    EXPECT_EQ (processor.settings.getDoubleValue ("scale", 1.0), 1.25) << "in force without a file";
}

TEST (Settings, LieWhereTheEnvironmentSays)
{
    const TemporaryConfig config;
    const auto home = juce::File::getSpecialLocation (juce::File::userHomeDirectory);

    for (const auto& [value, base] : { std::pair { config.base.getFullPathName(), config.base },
                                       std::pair { String(), home.getChildFile (".config") } })
    {
        setenv ("XDG_CONFIG_HOME", value.toRawUTF8(), 1);
        EXPECT_EQ (tessarin::Settings::getFile(), base.getChildFile ("Tessarin/Orvo/settings.settings"));
    }

    unsetenv ("XDG_CONFIG_HOME");
    EXPECT_EQ (tessarin::Settings::getFile(), home.getChildFile (".config/Tessarin/Orvo/settings.settings"));
}
} // namespace
