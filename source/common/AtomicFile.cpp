#include "AtomicFile.h"

#include <filesystem>

bool replaceFileAtomically (const juce::File& target, const void* data, size_t numBytes)
{
    // The name must not end as the target's does, or a scan for such files would see it.
    const auto suffix = ".tmp" + juce::String::toHexString (juce::Random::getSystemRandom().nextInt());
    const juce::TemporaryFile temporary (target, target.getSiblingFile ("." + target.getFileName() + suffix));

    {
        juce::FileOutputStream stream (temporary.getFile());

        if (stream.failedToOpen())
            return false;

        if (! stream.write (data, numBytes))
            return false;

        stream.flush();

        if (stream.getStatus().failed())
            return false;
    }

    // A disk that fills up halfway is no error to the stream.
    if (temporary.getFile().getSize() != static_cast<juce::int64> (numBytes))
        return false;

    std::error_code failure;
    std::filesystem::rename (temporary.getFile().getFullPathName().toStdString(),
                             target.getFullPathName().toStdString(), failure);
    return ! failure;
}
