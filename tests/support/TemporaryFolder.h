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
        auto name = (std::filesystem::temp_directory_path() / "orvo-tests-XXXXXX").string();

        if (mkdtemp (name.data()) == nullptr)
            throw std::runtime_error ("no temporary folder could be made");

        return name;
    }

    /** The folder becomes the home, so that no test reads or writes the user's files. */
    void makeHome() const
    {
        setenv ("HOME", path.c_str(), 1);
        setenv ("XDG_CONFIG_HOME", path.c_str(), 1);
    }

    const std::filesystem::path path = make();
};
