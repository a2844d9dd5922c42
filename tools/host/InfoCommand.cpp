#include "Commands.h"
#include "ModuleFactory.h"
#include "PluginHost.h"

#include <iostream>

namespace
{
void printField (const char* name, const juce::String& value)
{
    std::cout << "  " << juce::String (name).paddedRight (' ', 18) << value << '\n';
}

juce::String yesOrNo (bool b)
{
    return b ? "yes" : "no";
}

void printFactory (const FactoryInfo& factory)
{
    std::cout << "factory\n";
    printField ("vendor", factory.vendor);
    printField ("url", factory.url);
    printField ("e-mail", factory.email);
    printField ("flags", juce::String (factory.flags));

    for (const auto& entry : factory.classes)
    {
        std::cout << "class\n";
        printField ("category", entry.category);
        printField ("sub-categories", entry.subCategories);
        printField ("name", entry.name);
        printField ("vendor", entry.vendor);
        printField ("version", entry.version);
        printField ("sdk version", entry.sdkVersion);
        printField ("cardinality", "0x" + juce::String::toHexString (entry.cardinality));
        printField ("class id", entry.id);
    }
}

/** LV2 hosts read it in the bundle. */
void printDescription (PluginHost& host)
{
    juce::PluginDescription description;
    host.getInstance().fillInPluginDescription (description);
    std::cout << "plug-in\n";
    printField ("uri", description.fileOrIdentifier);
    printField ("name", description.name);
    printField ("vendor", description.manufacturerName);
    printField ("class", description.category);
}

void printBuses (PluginHost& host)
{
    auto& instance = host.getInstance();
    std::cout << "buses\n";

    for (const auto isInput : { true, false })
        for (auto i = 0; i < instance.getBusCount (isInput); ++i)
        {
            const auto* bus = instance.getBus (isInput, i);
            printField (isInput ? "input" : "output", "\"" + bus->getName() + "\", "
                                                          + bus->getDefaultLayout().getDescription()
                                                          + (bus->isEnabledByDefault() ? ", active" : ""));
        }

    for (const auto& [inputs, outputs] : { std::pair { 1, 1 }, { 2, 2 }, { 1, 2 }, { 2, 1 }, { 3, 3 } })
        printField ((juce::String (inputs) + " in, " + juce::String (outputs) + " out").toRawUTF8(),
                    host.acceptsChannels (inputs, outputs) ? "accepted" : "refused");
}

void runInfo (const Arguments& arguments)
{
    const auto module = findModule (arguments.valueOf ("--plugin", {}));
    PluginHost host (module);

    if (host.isLv2())
        printDescription (host);
    else
        printFactory (readFactory (module));

    auto& instance = host.getInstance();
    printBuses (host);

    std::cout << "behaviour\n";
    printField ("latency", juce::String (host.getLatency()) + " samples");
    printField ("tail", juce::String (instance.getTailLengthSeconds()) + " s");
    printField ("midi", yesOrNo (instance.acceptsMidi() || instance.producesMidi()));
    printField ("double precision", yesOrNo (instance.supportsDoublePrecisionProcessing()));
    printField ("editor", yesOrNo (instance.hasEditor()));
    printField ("parameters", juce::String (orvoParameterIds().size()) + " and "
                                  + juce::String (host.getParameters().size()
                                                  - static_cast<size_t> (orvoParameterIds().size()))
                                  + " of the wrapper");
    printField ("programs", juce::String (instance.getNumPrograms()));
}
} // namespace

Command infoCommand()
{
    return { "info", "", "tells what the module says of itself", { pluginOption }, runInfo };
}
