#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>

/** What differs where the module is an LV2 bundle. */
namespace lv2Bundle
{
[[nodiscard]] bool isBundle (const juce::File& module);

/** LV2 hosting that knows this bundle, too. */
[[nodiscard]] std::unique_ptr<juce::AudioPluginFormat> makeFormat (const juce::File& bundle);

/** Throws unless the library that is loaded is this bundle's: of two with one URI, JUCE takes the one that it finds where LV2
    plug-ins are installed. */
void requireLoaded (const juce::File& bundle);

/** Orvo's own ID; empty for what the wrapper adds. */
[[nodiscard]] juce::String parameterIdFrom (const juce::String& hostedId);

/** The plug-in's block out of what JUCE hands out, which is the text of a preset, and back. Empty without one. */
[[nodiscard]] juce::MemoryBlock blockFrom (const juce::MemoryBlock& preset);
[[nodiscard]] juce::MemoryBlock presetFrom (const juce::MemoryBlock& block);
} // namespace lv2Bundle
