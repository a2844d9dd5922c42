#include "FileListener.h"

namespace tessarin
{

FileListener::FileListener (const juce::File& file)
    : watchedFile (file), lastModificationTime (readModificationTime())
{
    constexpr auto intervalMs = 1000;
    startTimer (intervalMs);
}

juce::int64 FileListener::readModificationTime() const
{
    return watchedFile.getLastModificationTime().toMilliseconds();
}

void FileListener::timerCallback()
{
    const auto time = readModificationTime();

    if (time == lastModificationTime)
        return;

    lastModificationTime = time;
    sendChangeMessage();
}

} // namespace tessarin
