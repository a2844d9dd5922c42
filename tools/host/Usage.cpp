#include "Usage.h"

juce::String summaryOf (const Command& command)
{
    return juce::String (command.help).upToFirstOccurrenceOf ("\n", false, false);
}

juce::String formOf (const Option& option)
{
    return option.value != nullptr ? juce::String (option.name) + " " + option.value
                                   : juce::String (option.name);
}

juce::String usageOf (const Command& command)
{
    auto text =
        (juce::String ("usage: orvo-host ") + command.name + " [OPTIONS] " + command.operands).trimEnd()
        + "\n" + command.help + "\n";

    for (const auto& option : command.options)
        text << "  " << (formOf (option) + " ").paddedRight (' ', 22) << option.help << '\n';

    return text;
}

juce::String usageOfAll()
{
    juce::String text (
        "orvo-host: the Orvo plug-in as a program, through its VST3 or LV2 module\n\ncommands:\n");

    for (const auto& command : allCommands())
        text << "  " << juce::String (command.name).paddedRight (' ', 10) << summaryOf (command) << '\n';

    return text + "\n\"orvo-host COMMAND --help\" tells a command's options.\n";
}
