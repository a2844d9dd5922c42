#include "SettingsFile.h"

#include "settings/Settings.h"
#include "state/CheckedXml.h"

namespace tessarin
{

namespace
{
/** Moves a damaged file aside. False if it is in the way still. */
bool makeRoom (const juce::File& file)
{
    return checkXmlFile (file) != XmlFile::damaged || file.isDirectory()
           || file.moveFileTo (file.getSiblingFile ("settings.damaged"));
}

/** The file, unless JUCE's parser must not see it. */
juce::File findUsableFile()
{
    const auto file = Settings::getFile();
    return makeRoom (file) ? file : juce::File();
}

void logWhySavingFailed (const juce::File& file)
{
    const auto log = [] (const char* line) { juce::Logger::writeToLog (line); };

    log ("Unable to save the custom settings...");

    if (! file.exists())
        log ("   ...Settings file doesn't exist");
    else if (! file.hasWriteAccess())
        log ("   ...Settings file has no write access");
    else
        log ("   ...Settings file has write access");

    const auto folder = file.getParentDirectory();
    const auto isWritable = folder.hasWriteAccess();

    if (folder.exists())
        log (isWritable ? "   ...Parent folder has write access" : "   ...Parent folder has no write access");
    else if (! isWritable)
        log ("   ...Parent folder doesn't exist, and cannot be created as we have no write access");
}
} // namespace

SettingsFile::SettingsFile() : juce::PropertiesFile (findUsableFile(), Settings::getOptions())
{
}

SettingsFile::~SettingsFile()
{
    // The base class saves what is left.
    if (isOvertaken())
        setNeedsToBeSaved (false);
}

void SettingsFile::refresh()
{
    if (needsToBeSaved() && ! isOvertaken())
        return;

    if (! makeRoom (getFile()) || checkXmlFile (getFile()) != XmlFile::good)
        return;

    setNeedsToBeSaved (false);
    fileAtFailure.reset();
    reload();
}

void SettingsFile::saveOrLog()
{
    if (! trySaving())
        logWhySavingFailed (Settings::getFile());
}

bool SettingsFile::trySaving()
{
    fileAtFailure.reset();

    if (saveIfNeeded())
        return true;

    fileAtFailure = identify();
    return false;
}

void SettingsFile::propertyChanged()
{
    fileAtFailure.reset();
    juce::PropertiesFile::propertyChanged();
}

void SettingsFile::timerCallback()
{
    trySaving();
}

bool SettingsFile::isOvertaken() const
{
    return fileAtFailure && getFile().existsAsFile() && identify() != *fileAtFailure;
}

SettingsFile::Identity SettingsFile::identify() const
{
    // A save makes another file, with another number, within the same second, too.
    return { getFile().getFileIdentifier(), getFile().getLastModificationTime() };
}

} // namespace tessarin
