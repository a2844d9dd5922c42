#pragma once

#include <juce_data_structures/juce_data_structures.h>

#include <optional>
#include <utility>

namespace tessarin
{

/** The settings, as JUCE keeps them, in a file that other instances and processes write too, and that may be damaged,
    unreadable or out of reach. Message thread.

    JUCE's parser is not made for damaged files. One that is no XML is moved aside, to "settings.damaged", and the
    defaults apply. If it cannot be moved, this object has no file: nothing is read or saved. A file that cannot be read
    just now stays where it is.
*/
class SettingsFile final : public juce::PropertiesFile
{
public:
    SettingsFile();
    ~SettingsFile() override;

    /** Reads the file anew, as another instance may have changed it; unless a value still waits to be saved, which
        would be lost. One that could not be saved waits until the file is another than it was then. */
    void refresh();

    /** Saves what has changed. A failure goes to the log, with what is known of its reason. */
    void saveOrLog();

private:
    void propertyChanged() override;
    void timerCallback() override;

    bool trySaving();

    /** Another instance has written the file since a save failed here. */
    [[nodiscard]] bool isOvertaken() const;

    /** The file system's number and time of the file. */
    using Identity = std::pair<juce::uint64, juce::Time>;

    [[nodiscard]] Identity identify() const;

    /** When a save failed. */
    std::optional<Identity> fileAtFailure;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SettingsFile)
};

} // namespace tessarin
