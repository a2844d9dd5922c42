#pragma once

#include <juce_core/juce_core.h>

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

/** Files and folders that cannot be written, or with another mode not be read, while this exists, by root neither: the
    process works as nobody. */
struct ReadOnly
{
    ReadOnly (std::initializer_list<juce::File> filesToUse, mode_t mode = 0555) : files (filesToUse)
    {
        setMode (mode);
        isSwitched = user == 0 && setresuid (nobody, nobody, user) == 0;
    }

    ~ReadOnly()
    {
        if (isSwitched && setresuid (user, user, user) != 0)
            abort();

        setMode (0755);
    }

    void setMode (mode_t mode) const
    {
        for (const auto& file : files)
            chmod (file.getFullPathName().toRawUTF8(), mode);
    }

    static constexpr uid_t nobody = 65534;

    const juce::Array<juce::File> files;
    const uid_t user = getuid();
    bool isSwitched = false;
};
