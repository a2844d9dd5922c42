#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>

/** A folder that goes with its owner. */
struct TemporaryFolder
{
    TemporaryFolder() = default;

    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all (path, ignored);
    }

    TemporaryFolder (const TemporaryFolder&) = delete;
    TemporaryFolder& operator= (const TemporaryFolder&) = delete;

    static std::filesystem::path make()
    {
        auto name = (std::filesystem::temp_directory_path() / "orvo-XXXXXX").string();

        if (mkdtemp (name.data()) == nullptr)
            throw std::runtime_error ("no temporary folder could be made");

        return name;
    }

    const std::filesystem::path path = make();
};

/** An empty home until the end of the program, which so neither reads nor writes the user's files. Made before JUCE
    starts, which looks some of this up once, or before a module is loaded. */
struct TemporaryHome : TemporaryFolder
{
    TemporaryHome()
    {
        // The X server's key is found through the user's home.
        if (const auto* const user = getenv ("HOME"))
            setenv ("XAUTHORITY", (std::filesystem::path (user) / ".Xauthority").c_str(), 0);

        setenv ("HOME", path.c_str(), 1);
        setenv ("XDG_CONFIG_HOME", path.c_str(), 1);
    }
};

/** Makes JUCE, here and in the module, unable to connect to any display. */
inline void forbidDisplay()
{
    // JUCE joins any screen it finds. This name cannot be parsed; with an empty one it tries the first local screen.
    setenv ("DISPLAY", "none", 1);
}
