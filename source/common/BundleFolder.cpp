#include "BundleFolder.h"

namespace tessarin
{

juce::File getBundleResource (const juce::String& name)
{
    // In a bundle, the library is in "Contents/<processor>-linux".
    const auto library = juce::File::getSpecialLocation (juce::File::currentExecutableFile);
    const auto contents = library.getParentDirectory().getParentDirectory();

    if (contents.getFileName() != "Contents")
        return {};

    return contents.getChildFile ("Resources").getChildFile (name);
}

} // namespace tessarin
