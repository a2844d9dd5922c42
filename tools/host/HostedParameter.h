#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include <vector>

/** One parameter of the loaded module, as a host sees it.

    VST3 gives a host values from 0 to 1 and their texts. The kind and the range in plain units are therefore
    read from the texts that the module itself makes, so that they cannot differ from what it does. LV2 gives no texts.
*/
class HostedParameter
{
public:
    /** `id` is empty for a parameter that the wrapper adds. `texts`: what tells the texts; null for the parameter itself. */
    HostedParameter (juce::AudioProcessorParameter& parameter, juce::String id,
                     const juce::AudioProcessorParameter* texts);

    [[nodiscard]] const juce::String& getId() const noexcept { return id; }

    [[nodiscard]] bool isAddedByWrapper() const noexcept { return id.isEmpty(); }

    [[nodiscard]] juce::String getTitle() const { return parameter.getName (128); }

    /** From 0 to 1. */
    [[nodiscard]] float getValue() const { return parameter.getValue(); }

    /** Any thread. */
    void setValue (float normalised) { parameter.setValue (normalised); }

    [[nodiscard]] juce::String getText() const { return textAt (parameter.getValue()); }

    [[nodiscard]] juce::String getDefaultText() const { return textAt (parameter.getDefaultValue()); }

    [[nodiscard]] juce::String textAt (float normalised) const;

    /** Takes a number in plain units, with or without the unit, or the text of a choice or switch in upper or
        lower case. A percentage is a number from 0 to 1 unless "%" stands behind it. Throws for anything else
        and for values out of range. Takes effect with the next block. */
    void setFromText (const juce::String& text);

private:
    [[nodiscard]] juce::StringArray choices() const;
    [[nodiscard]] float normalisedChoice (const juce::String& text) const;
    [[nodiscard]] float normalisedNumber (const juce::String& text, double least, double most,
                                          const juce::String& unit) const;

    juce::AudioProcessorParameter& parameter;
    juce::String id;
    const juce::AudioProcessorParameter& textSource;
};

/** The IDs of Orvo's own parameters, in the host's order. A VST3 host sees only their hashes. */
[[nodiscard]] juce::StringArray orvoParameterIds();
