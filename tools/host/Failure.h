#pragma once

#include <juce_core/juce_core.h>

#include <stdexcept>

/** What went wrong, in one line for the user. The one type that commands throw; main() prints it, unless it
    is empty because all was said, and ends the program with `exitCode`. */
struct Failure : std::runtime_error
{
    static constexpr int failed = 1;
    static constexpr int wrongUsage = 2;
    static constexpr int targetMissed = 3;
    static constexpr int interrupted = 130;

    explicit Failure (const juce::String& message, int code = failed)
        : std::runtime_error (message.toStdString()), exitCode (code)
    {
    }

    int exitCode;
};
