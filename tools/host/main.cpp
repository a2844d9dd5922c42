#include "Commands.h"
#include "Failure.h"
#include "scratch/TemporaryFolder.h"
#include "Usage.h"

#include <juce_events/juce_events.h>

#include <algorithm>
#include <iostream>

namespace
{
void run (juce::StringArray words)
{
    const auto wantsHelp = words.contains ("--help") || words.contains ("-h");

    if (words.isEmpty() && ! wantsHelp)
        throw Failure ("no command; try --help", Failure::wrongUsage);

    const auto command = std::find_if (allCommands().begin(), allCommands().end(),
                                       [&] (const auto& c) { return words[0] == c.name; });

    if (command == allCommands().end())
    {
        if (! wantsHelp)
            throw Failure ("unknown command \"" + words[0] + "\"; try --help", Failure::wrongUsage);

        std::cout << usageOfAll();
        return;
    }

    if (wantsHelp)
    {
        std::cout << usageOf (*command);
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
        std::cout.flush();
        if (*failure.what() != 0)
            std::cerr << "orvo-host: " << failure.what() << '\n';
        return failure.exitCode;
    }
    catch (const std::exception& error)
    {
        std::cerr << "orvo-host: " << error.what() << '\n';
        return Failure::failed;
    }
}
