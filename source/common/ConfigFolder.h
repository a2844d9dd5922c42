#pragma once

#include <juce_core/juce_core.h>

namespace tessarin
{

/** The user's folder of the product: "XDG_CONFIG_HOME", or "~/.config" if that is not set or empty, then the
    maker, then the product. Settings, log and presets lie in it. May not exist yet. */
[[nodiscard]] juce::File getConfigFolder();

} // namespace tessarin
