#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>

/** What differs where the module is an LV2 bundle. */
namespace lv2Bundle
{
[[nodiscard]] bool isBundle (const juce::File& module);

/** LV2 hosting that finds Orvo in this bundle, whatever is installed. */
[[nodiscard]] std::unique_ptr<juce::AudioPluginFormat> makeFormat (const juce::File& bundle);

/** Orvo's own ID; empty for what the wrapper adds. */
[[nodiscard]] juce::String parameterIdFrom (const juce::String& hostedId);

/** The plug-in's block out of what JUCE hands out, which is the text of a preset, and back. Empty without one. */
[[nodiscard]] juce::MemoryBlock blockFrom (const juce::MemoryBlock& preset);
[[nodiscard]] juce::MemoryBlock presetFrom (const juce::MemoryBlock& block);
} // namespace lv2Bundle
