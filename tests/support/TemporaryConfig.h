#pragma once

#include <juce_core/juce_core.h>

#include <stdlib.h>

/** A configuration folder of its own for one test: what is made while it exists keeps its files there. */
class TemporaryConfig
{
public:
    TemporaryConfig() { setenv ("XDG_CONFIG_HOME", base.getFullPathName().toRawUTF8(), 1); }

    ~TemporaryConfig()
    {
        setenv ("XDG_CONFIG_HOME", previous.toRawUTF8(), 1);
        base.deleteRecursively();
    }

    /** A file or folder of the product. */
    juce::File file (const juce::String& path) const { return base.getChildFile ("Tessarin/Orvo/" + path); }

    /** A file or folder below the presets. */
    juce::File preset (const juce::String& path) const { return file ("Presets/" + path); }

    /** Makes a file below the presets, with its folders. */
    juce::File addPreset (const juce::String& path, const juce::String& text) const
    {
        const auto target = preset (path);
        target.getParentDirectory().createDirectory();
        target.replaceWithText (text, false, false, nullptr);
        return target;
    }

    juce::String log() const { return file ("log.log").loadFileAsString(); }

    /** Not made yet, as before a first start. */
    const juce::File base = juce::File::createTempFile ("orvo-config");

private:
    const juce::String previous = juce::SystemStats::getEnvironmentVariable ("XDG_CONFIG_HOME", {});
};

/** The entry of one parameter in a state. */
inline juce::String entry (const juce::String& id, const juce::String& value)
{
    return "<PARAM id=\"" + id + "\" value=\"" + value + "\"/>";
}

/** A state as presets and blocks hold it. */
inline juce::String stateText (const juce::String& children = {}, const juce::String& attributes = {},
                               const juce::String& tag = "orvo")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?> <" + tag + " " + attributes + ">" + children + "</"
           + tag + ">";
}
