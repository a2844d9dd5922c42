#include "TessarinLogger.h"

#include "common/ConfigFolder.h"

namespace tessarin
{

TessarinLogger::TessarinLogger (const juce::File& file) : logFile (file)
{
    logFile.create();
    juce::Logger::setCurrentLogger (this);
}

TessarinLogger::~TessarinLogger()
{
    juce::Logger::setCurrentLogger (nullptr);
}

void TessarinLogger::logMessage (const juce::String& message)
{
    constexpr size_t bufferSize = 256;

    const juce::ScopedLock scope (lock);
    juce::FileOutputStream stream (logFile, bufferSize);

    if (stream.failedToOpen())
        return;

    stream << getTime().formatted ("%d/%m/%Y %H:%M:%S ") << message << juce::newLine;
}

juce::File TessarinLogger::getDefaultFile()
{
    return getConfigFolder().getChildFile ("log.log");
}

} // namespace tessarin
