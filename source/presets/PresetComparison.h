#pragma once

#include "presets/PresetManager.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <utility>
#include <vector>

namespace tessarin
{

/** Tells whether the parameters still have the values of the current preset. It goes by the preset's file, so that it
    knows of a preset that a host's project has brought back, too. Message thread. */
class PresetComparison final
{
public:
    /** Both outlive this. */
    PresetComparison (const PresetManager& manager, const juce::AudioProcessorValueTreeState& parameters);

    /** When another preset is current, or its file is another. */
    void readPreset();

    /** True also where the preset cannot be read: its name is then all that is known of it. */
    [[nodiscard]] bool isChanged() const;

private:
    const PresetManager& manager;
    const juce::AudioProcessorValueTreeState& parameters;

    /** From 0 to 1. Empty for a preset that cannot be read. */
    std::vector<std::pair<const juce::RangedAudioParameter*, float>> values;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetComparison)
};

} // namespace tessarin
