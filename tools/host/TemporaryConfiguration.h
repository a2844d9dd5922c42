#pragma once

#include "scratch/TemporaryFolder.h"

#include <juce_core/juce_core.h>

/** A home of its own for the module, so that what the user has neither shows nor changes, with a theme in it. Made
    before the module is loaded; removed with all that the module wrote, its factory presets among it. */
class TemporaryConfiguration
{
public:
    /** `theme`: one of the compiled-in themes, or empty for the default. */
    explicit TemporaryConfiguration (const juce::String& theme);

private:
    const TemporaryHome home;
};
