#include "settings/TessarinLogger.h"

#include "core/OrvoAudioProcessor.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{
using juce::Logger;
using juce::String;

TEST (Log, HoldsALineWithTheTimeForEachMessage)
{
    const TemporaryConfig config;
    const auto file = config.file ("log.log");

    {
        tessarin::TessarinLogger logger (file);
        EXPECT_TRUE (file.existsAsFile());
        EXPECT_EQ (file.getSize(), 0) << "nothing is written at the start";

        logger.getTime = [] { return juce::Time (2026, 1, 1, 12, 0, 0, 0, true); };
        Logger::writeToLog ("x");
        logger.getTime = [] { return juce::Time (2026, 10, 30, 23, 4, 5, 678, true); };
        Logger::writeToLog (String::fromUTF8 ("\xc3\xa4 ") + String::repeatedString ("long ", 200));
    }

    tessarin::TessarinLogger logger (file);
    logger.getTime = [] { return juce::Time (2026, 10, 30, 23, 4, 6, 0, true); };
    Logger::writeToLog ("");

    EXPECT_EQ (config.log(), "01/02/2026 12:00:00 x\r\n30/11/2026 23:04:05 " + String::fromUTF8 ("\xc3\xa4 ")
                                 + String::repeatedString ("long ", 200) + "\r\n30/11/2026 23:04:06 \r\n");
}

TEST (Log, IsThatOfTheNewestInstanceUntilAnyEnds)
{
    const TemporaryConfig config;
    auto first = std::make_unique<OrvoAudioProcessor>();
    EXPECT_EQ (Logger::getCurrentLogger(), &first->logger);

    const OrvoAudioProcessor second;
    EXPECT_EQ (Logger::getCurrentLogger(), &second.logger);

    first.reset();
    EXPECT_EQ (Logger::getCurrentLogger(), nullptr);

    const OrvoAudioProcessor third;
    EXPECT_EQ (Logger::getCurrentLogger(), &third.logger);
}
} // namespace
