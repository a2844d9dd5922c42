#include "TemporaryConfiguration.h"

#include "Failure.h"
#include "settings/Settings.h"

TemporaryConfiguration::TemporaryConfiguration (const juce::String& theme)
{
    if (theme.isEmpty())
        return;

    juce::PropertiesFile settings (tessarin::Settings::getFile(), tessarin::Settings::getOptions());
    settings.setValue (tessarin::Settings::themeKey, theme);

    if (! settings.save())
        throw Failure (settings.getFile().getFullPathName() + ": cannot be written");
}
