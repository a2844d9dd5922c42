#include "Settings.h"

#include "common/ConfigFolder.h"

namespace tessarin::Settings
{

juce::File getFile()
{
    return getConfigFolder().getChildFile ("settings.settings");
}

juce::PropertiesFile::Options getOptions()
{
    juce::PropertiesFile::Options options;
    options.storageFormat = juce::PropertiesFile::storeAsXML;
    options.millisecondsBeforeSaving = 3000;
    return options;
}

} // namespace tessarin::Settings
