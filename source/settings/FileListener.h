#pragma once

#include <juce_events/juce_events.h>

namespace tessarin
{

/** Watches a file, which may not exist, and broadcasts a change when its modification time differs from a
    second ago. The file system's times are taken as whole seconds. Message thread. */
class FileListener final : public juce::ChangeBroadcaster, public juce::Timer
{
public:
    explicit FileListener (const juce::File& file);

    void timerCallback() override;

private:
    /** In milliseconds; 0 for a missing file. */
    [[nodiscard]] juce::int64 readModificationTime() const;

    const juce::File watchedFile;
    juce::int64 lastModificationTime;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (FileListener)
};

} // namespace tessarin
