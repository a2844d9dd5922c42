#include "Commands.h"
#include "Failure.h"
#include "scratch/TemporaryFolder.h"

#include <juce_events/juce_events.h>

#include <algorithm>
#include <iostream>

namespace
{
const std::vector<Command>& commands()
{
    static const std::vector<Command> all { infoCommand(),  paramsCommand(),  renderCommand(),
                                            benchCommand(), pictureCommand(), presetsCommand(),
                                            stateCommand(), openCommand() };
    return all;
}

void printUsage (const Command& command)
{
    std::cout
        << (juce::String ("usage: orvo-host ") + command.name + " [OPTIONS] " + command.operands).trimEnd()
        << '\n'
        << command.help << '\n';

    for (const auto& option : command.options)
        std::cout << "  "
                  << (juce::String (option.name) + " " + (option.value != nullptr ? option.value : ""))
                         .paddedRight (' ', 22)
                  << option.help << '\n';
}

void printUsage()
{
    std::cout << "orvo-host: the Orvo plug-in as a program, through its VST3 module\n\ncommands:\n";

    for (const auto& command : commands())
        std::cout << "  " << juce::String (command.name).paddedRight (' ', 10)
                  << juce::String (command.help).upToFirstOccurrenceOf ("\n", false, false) << '\n';

    std::cout << "\n\"orvo-host COMMAND --help\" tells a command's options.\n";
}

void run (juce::StringArray words)
{
    const auto wantsHelp = words.contains ("--help") || words.contains ("-h");

    if (words.isEmpty() && ! wantsHelp)
        throw Failure ("no command; try --help", Failure::wrongUsage);

    const auto command = std::find_if (commands().begin(), commands().end(),
                                       [&] (const auto& c) { return words[0] == c.name; });

    if (command == commands().end())
    {
        if (! wantsHelp)
            throw Failure ("unknown command \"" + words[0] + "\"; try --help", Failure::wrongUsage);

        printUsage();
        return;
    }

    if (wantsHelp)
    {
        printUsage (*command);
        return;
    }

    words.remove (0);
    const Arguments arguments (words, command->options);

    if (*command->operands == 0 && ! arguments.operands.isEmpty())
        throw Failure (juce::String (command->name) + " takes options alone, not \"" + arguments.operands[0]
                           + "\"",
                       Failure::wrongUsage);

    if (! command->opensWindows)
        forbidDisplay();

    const juce::ScopedJuceInitialiser_GUI juce;
    command->run (arguments);
}
} // namespace

int main (int argc, char** argv)
{
    try
    {
        juce::StringArray words;
        for (auto i = 1; i < argc; ++i)
            words.add (juce::String::fromUTF8 (argv[i]));

        run (words);
        std::cout.flush();
        return 0;
    }
    catch (const Failure& failure)
    {
        std::cerr << "orvo-host: " << failure.what() << '\n';
        return failure.exitCode;
    }
    catch (const std::exception& error)
    {
        std::cerr << "orvo-host: " << error.what() << '\n';
        return Failure::failed;
    }
}
