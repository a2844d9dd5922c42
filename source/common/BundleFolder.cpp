#include "BundleFolder.h"

namespace tessarin
{

juce::File getBundleResource (const juce::String& name)
{
    const auto folder =
        juce::File::getSpecialLocation (juce::File::currentExecutableFile).getParentDirectory();

    // In a VST3 bundle, the library is in "Contents/<processor>-linux"; in an LV2 bundle, beside its description.
    const auto contents = folder.getParentDirectory();

    if (contents.getFileName() == "Contents")
        return contents.getChildFile ("Resources").getChildFile (name);

    if (folder.getChildFile ("manifest.ttl").existsAsFile())
        return folder.getChildFile ("Resources").getChildFile (name);

    return {};
}

} // namespace tessarin
