#include "AtomicFile.h"

bool replaceFileAtomically (const juce::File& target, const void* data, size_t numBytes)
{
    const juce::TemporaryFile temporary (target, juce::TemporaryFile::useHiddenFile);

    {
        juce::FileOutputStream stream (temporary.getFile());

        if (stream.failedToOpen())
            return false;

        stream.write (data, numBytes);
        stream.flush();

        if (stream.getStatus().failed())
            return false;
    }

    return temporary.overwriteTargetFileWithTemporary();
}
