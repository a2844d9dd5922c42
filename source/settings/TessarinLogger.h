#pragma once

#include <juce_core/juce_core.h>

#include <functional>

namespace tessarin
{

/** Appends each message as one line to the log file: the time as "%d/%m/%Y %H:%M:%S ", the message, CR LF.

    The file is opened and closed for each line, so that several instances and processes can share it; a line
    that cannot be written is lost. Any thread. The newest logger of a process is the one in use, and the end
    of any of them leaves none.
*/
class TessarinLogger final : public juce::Logger
{
public:
    /** Creates the file, with its folders, if it does not exist, and becomes the process's logger. */
    explicit TessarinLogger (const juce::File& file);
    ~TessarinLogger() override;

    void logMessage (const juce::String& message) override;

    [[nodiscard]] static juce::File getDefaultFile();

    /** The clock; replaced by tests. */
    std::function<juce::Time()> getTime = juce::Time::getCurrentTime;

private:
    juce::File logFile;
    juce::CriticalSection lock;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (TessarinLogger)
};

} // namespace tessarin
