#include "PluginSettings.h"

#include "Failure.h"
#include "PresetListing.h"

void applyPreset (PluginHost& host, const juce::String& name)
{
    const auto index = findPreset (name);

    if (index < 0)
        throw Failure ("there is no preset \"" + name + "\"; \"orvo-host presets\" lists them");

    // LV2 hosts see the factory's, in no order.
    if (host.isLv2())
    {
        if (! host.loadProgram (listPresets()[index].name))
            throw Failure ("\"" + name + "\" is none of the presets that LV2 hosts are given");

        return;
    }

    auto& instance = host.getInstance();

    if (index >= instance.getNumPrograms() || instance.getProgramName (index) != listPresets()[index].name)
        throw Failure ("the module's programs are not the presets on disk");

    instance.setCurrentProgram (index);
}

void applyState (PluginHost& host, const juce::File& file)
{
    juce::MemoryBlock block;

    if (! file.existsAsFile() || ! file.loadFileAsData (block))
        throw Failure (file.getFullPathName() + ": cannot be read");

    if (! host.setState (block))
        throw Failure (file.getFullPathName() + ": not a state of Orvo");
}

void applySetting (PluginHost& host, const juce::String& setting)
{
    if (! setting.containsChar ('='))
        throw Failure ("--set takes ID=VALUE, not \"" + setting + "\"", Failure::wrongUsage);

    host.getParameter (setting.upToFirstOccurrenceOf ("=", false, false).trim())
        .setFromText (setting.fromFirstOccurrenceOf ("=", false, false).trim());
}

void applySettings (PluginHost& host, const Arguments& arguments)
{
    if (arguments.has ("--preset"))
        applyPreset (host, arguments.valueOf ("--preset", {}));

    if (arguments.has ("--state"))
        applyState (host, fileFromOperand (arguments.valueOf ("--state", {})));

    for (const auto& setting : arguments.valuesOf ("--set"))
        applySetting (host, setting);
}

juce::StringArray settingsApartFromDefaults (PluginHost& host)
{
    juce::StringArray settings;

    for (const auto& parameter : host.getParameters())
        if (! parameter.isAddedByWrapper() && parameter.getText() != parameter.getDefaultText())
            settings.add (parameter.getId() + "=" + parameter.getText());

    return settings;
}
