#pragma once

#include <juce_data_structures/juce_data_structures.h>

/** The settings file, shared by all instances of the plug-in on the machine. */
namespace tessarin::Settings
{
/** A factor on the editor's size. */
inline constexpr auto scaleKey = "scale";
inline constexpr auto defaultScale = 1.0;

inline constexpr auto themeKey = "theme";
inline constexpr auto defaultTheme = "Default";

[[nodiscard]] juce::File getFile();

/** The same, for a juce::PropertiesFile, whose parser is not made for damaged files: one that is no XML is
    moved aside first, to "settings.damaged", so that the defaults apply. Before every load and reload. */
[[nodiscard]] juce::File getUsableFile();

/** Reads the file anew, as another instance may have changed it; unless a value still waits to be saved, which
    would be lost. */
void reload (juce::PropertiesFile&);

/** XML, saved 3 s after a change; no lock between processes, so the last save wins. */
[[nodiscard]] juce::PropertiesFile::Options getOptions();

} // namespace tessarin::Settings
