#pragma once

#include "Arguments.h"

/** One command of the program. Each has a source file of its own and is listed in Commands.cpp. */
struct Command
{
    const char* name;

    /** The operands, for the usage text. */
    const char* operands;

    const char* help;
    std::vector<Option> options;

    /** Runs on the message thread; throws a Failure. */
    void (*run) (const Arguments&);

    /** Without this, the program never connects to a display. */
    bool opensWindows = false;
};

Command infoCommand();
Command paramsCommand();
Command renderCommand();
Command masterCommand();
Command benchCommand();
Command pictureCommand();
Command loudnessCommand();
Command openCommand();
Command presetsCommand();
Command stateCommand();
Command documentCommand();

/** In the order of the usage text. */
[[nodiscard]] const std::vector<Command>& allCommands();
