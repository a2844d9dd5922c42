#pragma once

#include "Arguments.h"
#include "PluginHost.h"

/** Applies --preset, then --state, then each --set of a command to the loaded module. Throws, saying which,
    if one of them cannot be. */
void applySettings (PluginHost& host, const Arguments& arguments);

/** The same one by one. */
void applyPreset (PluginHost& host, const juce::String& name);
void applyState (PluginHost& host, const juce::File& file);
void applySetting (PluginHost& host, const juce::String& setting);

/** Every parameter that is not at its default, as "--set" takes it. */
[[nodiscard]] juce::StringArray settingsApartFromDefaults (PluginHost& host);

/** The options that `applySettings` knows. */
inline constexpr Option presetOption {
    "--preset", "NAME", "a preset by its name, or by its folders and name, as \"presets\" lists them"
};
inline constexpr Option stateOption { "--state", "FILE",
                                      "a state that a host or this program saved, applied after --preset" };
inline constexpr Option setOption {
    "--set", "ID=VALUE",
    "a parameter: a number in its unit (0.5 or 50% of a shape), or a choice; repeatable, last"
};
