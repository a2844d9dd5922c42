#include "Commands.h"
#include "PluginHost.h"

#include <iostream>

namespace
{
void printRow (const juce::StringArray& cells)
{
    static constexpr int widths[] { 4, 24, 26, 14, 14, 14 };
    juce::String row;

    for (auto i = 0; i < cells.size(); ++i)
        row << (i < static_cast<int> (std::size (widths)) ? cells[i].paddedRight (' ', widths[i]) : cells[i])
            << ' ';

    std::cout << row.trimEnd() << '\n';
}

void runParams (const Arguments& arguments)
{
    PluginHost host (findModule (arguments.valueOf ("--plugin", {})));
    printRow ({ "#", "id", "title", "default", "now", "least", "most" });

    auto index = 0;
    for (const auto& parameter : host.getParameters())
        printRow ({ juce::String (index++), parameter.isAddedByWrapper() ? "(wrapper)" : parameter.getId(),
                    parameter.getTitle(), parameter.getDefaultText(), parameter.getText(),
                    parameter.textAt (0.0f), parameter.textAt (1.0f) });
}
} // namespace

Command paramsCommand()
{
    return { "params",
             "",
             "lists all parameters in the host's order, with their defaults and ranges\n"
             "What the module's wrapper adds to Orvo's own is marked \"(wrapper)\".",
             { pluginOption },
             runParams };
}
