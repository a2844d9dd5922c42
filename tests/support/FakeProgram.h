#pragma once

#include <juce_core/juce_core.h>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

/** A program of the desktop, such as its document viewer, first on the search path while this exists. It tells
    its last argument, and answers with a line. */
struct FakeProgram
{
    FakeProgram (const juce::String& name, const juce::File& folder, const juce::String& answer = {})
    {
        const auto pipe = folder.getChildFile ("pipe").getFullPathName();
        const auto script = folder.getChildFile (name);
        folder.createDirectory();
        script.replaceWithText ("#!/bin/sh\nfor last; do :; done\nprintf '%s\\n' \"$last\" >'" + pipe
                                    + "'\necho '" + answer + "'\n",
                                false, false, nullptr);
        script.setExecutePermission (true);
        mkfifo (pipe.toRawUTF8(), 0600);
        reader = open (pipe.toRawUTF8(), O_RDWR);
        setenv ("PATH", (folder.getFullPathName() + ":" + previousPath).toRawUTF8(), 1);
    }

    ~FakeProgram()
    {
        setenv ("PATH", previousPath.toRawUTF8(), 1);
        previousFolder.setAsCurrentWorkingDirectory();
        close (reader);
    }

    /** Of the first run that was not yet asked for. Waits until the program runs; empty if it never does. */
    juce::String readLastArgument() const
    {
        constexpr auto longestWaitMs = 10000;
        pollfd waiting { reader, POLLIN, 0 };
        std::string argument;
        char letter = 0;

        // No further: the next run may have written already.
        while (poll (&waiting, 1, longestWaitMs) == 1 && read (reader, &letter, 1) == 1 && letter != '\n')
            argument += letter;

        return juce::String::fromUTF8 (argument.c_str());
    }

    const juce::String previousPath = juce::SystemStats::getEnvironmentVariable ("PATH", {});

    /** JUCE's file dialog changes it. */
    const juce::File previousFolder = juce::File::getCurrentWorkingDirectory();
    int reader = -1;
};
