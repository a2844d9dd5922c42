#pragma once

#include <filesystem>

/** Adds to the descriptions that the module has written into its bundle: what kind of plug-in it is, the names of choices and the
    units of values, and the factory presets. `configuration`: an empty folder that stands for the user's and is in force.
    Throws where something is missing or cannot be written. */
void completeBundle (const std::filesystem::path& bundle, const std::filesystem::path& configuration);
