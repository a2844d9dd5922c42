#include "TemporaryConfiguration.h"

#include "common/ConfigFolder.h"
#include "Failure.h"
#include "settings/Settings.h"

namespace
{
/** Beside the project's or an installed program, or where this build took them from. */
juce::File findFactoryPresets()
{
    const auto program =
        juce::File::getSpecialLocation (juce::File::currentExecutableFile).getParentDirectory();

    for (const auto* candidate :
         { "../../presets", "../share/orvo/presets/Factory", ORVO_PRESETS_FROM_PROGRAM })
        if (const auto bank = program.getChildFile (candidate);
            bank.getNumberOfChildFiles (juce::File::findDirectories) > 0)
            return bank;

    throw Failure ("the factory presets are not at "
                   + program.getChildFile ("../share/orvo/presets/Factory").getFullPathName());
}

void saveTheme (const juce::String& theme)
{
    juce::PropertiesFile settings (tessarin::Settings::getFile(), tessarin::Settings::getOptions());
    settings.setValue (tessarin::Settings::themeKey, theme);

    if (! settings.save())
        throw Failure (settings.getFile().getFullPathName() + ": cannot be written");
}
} // namespace

TemporaryConfiguration::TemporaryConfiguration (const juce::String& theme)
{
    const auto bank = findFactoryPresets();

    if (const auto presets = tessarin::getConfigFolder().getChildFile ("Presets");
        ! presets.createDirectory() || ! bank.copyDirectoryTo (presets.getChildFile ("Factory")))
        throw Failure (presets.getFullPathName() + ": cannot be written");

    if (theme.isNotEmpty())
        saveTheme (theme);
}
