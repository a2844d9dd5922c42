#include "ConfigFolder.h"

namespace tessarin
{

juce::File getConfigFolder()
{
    const auto configured = juce::SystemStats::getEnvironmentVariable ("XDG_CONFIG_HOME", {});

    // getChildFile takes an absolute path as it is, and keeps a relative one from meaning different folders
    // in different calls of juce::File.
    const auto base = configured.isNotEmpty()
                          ? juce::File::getCurrentWorkingDirectory().getChildFile (configured)
                          : juce::File ("~/.config");

    return base.getChildFile ("Tessarin").getChildFile ("Orvo");
}

} // namespace tessarin
