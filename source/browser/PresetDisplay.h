#pragma once

#include "presets/Preset.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** What is known about the current preset. Message thread. */
class PresetDisplay final : public juce::Component
{
public:
    PresetDisplay();

    void setPreset (const Preset& newPreset);

    [[nodiscard]] const Preset& getPreset() const { return preset; }

    void paint (juce::Graphics&) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    Preset preset;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetDisplay)
};

} // namespace tessarin
