#pragma once

#include "widgets/ParameterMenu.h"
#include "widgets/ParameterSlider.h"
#include "widgets/ValueField.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>

namespace tessarin
{

/** The standard value control: a rotary slider of 60 by 95 tied to one parameter, its name and its value
    below the knob. Other layouts are linear. A value can be typed in a field over the one that is shown. Message
    thread. */
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
    ParameterSlider slider;
    std::unique_ptr<juce::SliderParameterAttachment> attachment;
    bool textBoxEditable = false;

private:
    void applyLayout();
    void showValue();
    void typeValue (const juce::String& typed);

    juce::RangedAudioParameter* const parameter;
    bool isDragged = false;
    luna::ParameterMenu menu { slider, parameter, [this] { typeValue ({}); } };

    /** Made when it is needed first. */
    std::unique_ptr<luna::ValueField> field;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ParameterLabelSlider)
};

} // namespace tessarin
