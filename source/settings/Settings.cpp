#include "Settings.h"

#include "common/CheckedXml.h"
#include "common/ConfigFolder.h"

namespace tessarin::Settings
{

juce::File getFile()
{
    return getConfigFolder().getChildFile ("settings.settings");
}

juce::File getUsableFile()
{
    const auto file = getFile();

    if (file.existsAsFile() && parseCheckedXml (file) == nullptr)
        file.moveFileTo (file.getSiblingFile ("settings.damaged"));

    return file;
}

void reload (juce::PropertiesFile& settings)
{
    if (! settings.needsToBeSaved() && getUsableFile().existsAsFile())
        settings.reload();
}

juce::PropertiesFile::Options getOptions()
{
    juce::PropertiesFile::Options options;
    options.storageFormat = juce::PropertiesFile::storeAsXML;
    options.millisecondsBeforeSaving = 3000;
    return options;
}

} // namespace tessarin::Settings
