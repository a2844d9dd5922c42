#pragma once

#include "widgets/Panel.h"
#include "widgets/ParameterChoiceButtons.h"
#include "widgets/ParameterLabelSlider.h"

/** The strip that sets layout, oversampling and input gain. Message thread. */
class InputPanel final : public luna::Panel
{
public:
    explicit InputPanel (juce::AudioProcessorValueTreeState& state);

    void layoutContent() override;

    luna::ParameterChoiceButtons layoutButtons;
    tessarin::ParameterLabelSlider inGainSlider;
    luna::ParameterChoiceButtons oversamplingButtons;
    juce::Label layoutLabel;
    juce::Label oversamplingLabel;

private:
    void setTooltips();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (InputPanel)
};
