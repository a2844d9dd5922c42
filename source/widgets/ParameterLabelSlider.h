#pragma once

#include "widgets/CommaValueSlider.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>

namespace tessarin
{

/** The standard value control: a rotary slider of 60 by 95 tied to one parameter, its name and its value
    below the knob. Other layouts are linear. Message thread. */
class ParameterLabelSlider : public juce::Component, public juce::SettableTooltipClient
{
public:
    enum Layout
    {
        rotary = 0,
        nameLeftValueRight = 1,
        valueLeftNameRight = 2,
        nameAbove = 3,
        nameBeside = 500
    };

    /** A parameter that does not exist leaves the slider unattached. */
    ParameterLabelSlider (juce::String name, juce::String parameterId,
                          juce::AudioProcessorValueTreeState& state);

    /** Ends the gesture of a drag that the window's end interrupts, as the host waits for it. */
    ~ParameterLabelSlider() override;

    void setLayout (int newLayout);

    void resized() override;
    void colourChanged() override;

    /** On every part of the control, so that it shows wherever the mouse stands. */
    void setTooltip (const juce::String& text) override;

    /** Width of the name beside the slider. */
    int labelWidth = 85;
    int layout = rotary;
    juce::Label nameLabel;

    /** For the linear layouts. */
    juce::Label valueLabel;
    CommaValueSlider slider;
    std::unique_ptr<juce::SliderParameterAttachment> attachment;
    bool textBoxEditable = false;

private:
    void applyLayout();
    void showValue();

    juce::RangedAudioParameter* const parameter;
    bool isDragged = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ParameterLabelSlider)
};

} // namespace tessarin
