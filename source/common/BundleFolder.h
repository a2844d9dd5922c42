#pragma once

#include <juce_core/juce_core.h>

/** What lies beside the plug-in's code. */
namespace tessarin
{

/** A file or folder of the resources in the module's bundle, which may not exist. Empty where the code is in no bundle,
    as in programs. */
[[nodiscard]] juce::File getBundleResource (const juce::String& name);

} // namespace tessarin
