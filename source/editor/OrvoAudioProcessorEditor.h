#pragma once

#include "core/OrvoAudioProcessor.h"

/** The plug-in's window. For now it lists all parameters with plain sliders. */
class OrvoAudioProcessorEditor final : public juce::AudioProcessorEditor
{
public:
    explicit OrvoAudioProcessorEditor (OrvoAudioProcessor&);

    void resized() override;

private:
    juce::GenericAudioProcessorEditor controls;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (OrvoAudioProcessorEditor)
};
