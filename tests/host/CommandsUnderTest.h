#pragma once

#include "../support/TemporaryConfig.h"
#include "HostTestSupport.h"

#include <gtest/gtest.h>

inline const juce::File trackedBank (ORVO_PRESETS);

/** The commands of orvo-host, in a folder of their own and with the presets that the module brings. */
class Commands : public testing::Test
{
protected:
    [[nodiscard]] ProgramRun run (const juce::String& words) const { return runHost (temporary, words); }

    /** What it prints when all goes well. */
    juce::StringArray lines (const juce::String& words) const
    {
        const auto result = run (words);
        EXPECT_EQ (result.exitCode, 0) << words << ": " << result.errors;
        EXPECT_EQ (result.errors, "") << words;
        return linesOf (result.output);
    }

    TemporaryConfig config;
    WorkFolder temporary;
};
