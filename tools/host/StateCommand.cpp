#include "AudioFile.h"
#include "Commands.h"
#include "Failure.h"
#include "PluginSettings.h"

#include <iostream>

namespace
{
void saveState (PluginHost& host, const juce::File& file, bool mayReplace)
{
    if (file.exists() && ! mayReplace)
        throw Failure (file.getFullPathName() + ": exists already; --force replaces it");

    const auto block = host.getState();
    const juce::TemporaryFile unfinished (file, unfinishedFileFor (file));

    if (! unfinished.getFile().replaceWithData (block.getData(), block.getSize()))
        throw Failure (file.getFullPathName() + ": cannot be written");

    moveIntoPlace (unfinished.getFile(), file, mayReplace);
    std::cout << file.getFullPathName() << ": " << block.getSize() << " bytes\n";
}

void runState (const Arguments& arguments)
{
    const auto& operands = arguments.operands;
    const auto isSave = operands.size() == 2 && operands[0] == "save";
    const auto isLoad = operands.size() == 2 && operands[0] == "load";

    if (! isSave && ! isLoad)
        throw Failure ("state takes \"save FILE\" or \"load FILE\"", Failure::wrongUsage);

    for (const auto* option : { "--preset", "--state", "--set", "--force" })
        if (isLoad && arguments.has (option))
            throw Failure (juce::String (option) + " belongs to \"state save\"", Failure::wrongUsage);

    PluginHost host (findModule (arguments.valueOf ("--plugin", {})));
    const auto file = fileFromOperand (operands[1]);

    if (isSave)
    {
        applySettings (host, arguments);
        saveState (host, file, arguments.has ("--force"));
        return;
    }

    applyState (host, file);

    for (const auto& setting : settingsApartFromDefaults (host))
        std::cout << setting << '\n';
}
} // namespace

Command stateCommand()
{
    return { "state",
             "save|load FILE",
             "saves the module's state, or loads one and prints what differs from the defaults\n"
             "A file holds the bytes that any host stores for the plug-in.",
             { presetOption,
               stateOption,
               setOption,
               { "--force", nullptr, "replaces an existing file" },
               pluginOption },
             runState };
}
