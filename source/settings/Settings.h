#pragma once

#include "common/ThemeNames.h"

#include <juce_data_structures/juce_data_structures.h>

/** The settings file, shared by all instances of the plug-in on the machine. */
namespace tessarin::Settings
{
/** A factor on the editor's size. */
inline constexpr auto scaleKey = "scale";
inline constexpr auto defaultScale = 1.0;

inline constexpr auto themeKey = "theme";
inline constexpr auto defaultTheme = embeddedThemeNames.front();

[[nodiscard]] juce::File getFile();

/** XML, saved 3 s after a change; no lock between processes, so the last save wins. */
[[nodiscard]] juce::PropertiesFile::Options getOptions();

} // namespace tessarin::Settings
