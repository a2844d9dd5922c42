#include "ParameterLabelSlider.h"

#include "common/FontHeights.h"
#include "widgets/PixelPicture.h"

namespace tessarin
{

ParameterLabelSlider::ParameterLabelSlider (juce::String name, juce::String parameterId,
                                            juce::AudioProcessorValueTreeState& state)
    : slider (state.getParameter (parameterId)), parameter (state.getParameter (parameterId))
{
    nameLabel.setText (name, juce::dontSendNotification);
    valueLabel.setText ("10%", juce::dontSendNotification);
    slider.setTitle (name);
    slider.setWantsKeyboardFocus (true);
    slider.setMouseClickGrabsKeyboardFocus (false);

    for (auto* label : { &nameLabel, &valueLabel })
        label->setFont (juce::FontOptions (luna::FontHeights::control));

    for (auto* child : std::initializer_list<juce::Component*> { &nameLabel, &valueLabel, &slider })
    {
        addAndMakeVisible (*child);
        luna::bufferToPixels (*child);
    }

    if (parameter != nullptr)
        attachment =
            std::make_unique<juce::SliderParameterAttachment> (*parameter, slider, state.undoManager);

    slider.setSliderStyle (juce::Slider::RotaryVerticalDrag);
    slider.setNumDecimalPlacesToDisplay (3);
    slider.setVelocityModeParameters (2.0, 1, 0.001, true);

    showValue();
    slider.onValueChange = [this] { showValue(); };
    slider.onDragStart = [this] { isDragged = true; };
    slider.onDragEnd = [this] { isDragged = false; };
    slider.onTypingWanted = [this] (auto typed) { typeValue (typed); };

    applyLayout();
}

ParameterLabelSlider::~ParameterLabelSlider()
{
    if (isDragged && parameter != nullptr)
        parameter->endChangeGesture();
}

void ParameterLabelSlider::setLayout (int newLayout)
{
    layout = newLayout;
    applyLayout();
    resized();
}

void ParameterLabelSlider::applyLayout()
{
    using juce::Justification;
    using juce::Slider;

    const auto isReadOnly = ! textBoxEditable;
    constexpr auto boxWidth = 500;
    constexpr auto boxHeight = 20;

    valueLabel.setVisible (layout == nameLeftValueRight || layout == valueLeftNameRight);

    if (layout == rotary)
    {
        slider.setSliderStyle (Slider::RotaryVerticalDrag);
        slider.setTextBoxStyle (Slider::TextBoxBelow, isReadOnly, boxWidth, boxHeight);
        nameLabel.setJustificationType (Justification::centred);
        return;
    }

    const auto hasBox = layout == nameBeside;
    slider.setSliderStyle (Slider::LinearHorizontal);
    slider.setTextBoxStyle (hasBox ? Slider::TextBoxRight : Slider::NoTextBox, isReadOnly, boxWidth,
                            boxHeight);

    nameLabel.setJustificationType (layout == nameLeftValueRight ? Justification::centredLeft
                                    : layout == nameAbove        ? Justification::centred
                                                                 : Justification::centredRight);
    valueLabel.setJustificationType (layout == nameLeftValueRight ? Justification::centredRight
                                                                  : Justification::centredLeft);
}

void ParameterLabelSlider::resized()
{
    const auto width = getWidth();
    const auto height = getHeight();
    const auto third = width / 3;
    const auto half = height / 2;

    switch (layout)
    {
        case nameLeftValueRight:
            slider.setBounds (0, half, width, half);
            nameLabel.setBounds (0, 0, 2 * third, half);
            valueLabel.setBounds (2 * third, 0, third, half);
            break;

        case valueLeftNameRight:
            slider.setBounds (0, half, width, half);
            valueLabel.setBounds (0, 0, third, half);
            nameLabel.setBounds (third, 0, 2 * third, half);
            break;

        case nameAbove:
            slider.setBounds (0, half, width, half);
            nameLabel.setBounds (0, 0, width, half);
            break;

        case nameBeside:
            nameLabel.setBounds (0, 0, labelWidth, height);
            slider.setBounds (labelWidth, 0, width - labelWidth, height);
            break;

        default:
            slider.setBounds (width / 2 - 30, half - 47, 60, 95);
            nameLabel.setBounds (width / 2 - 30, half + 21, 60, 15);
            break;
    }
}

void ParameterLabelSlider::colourChanged()
{
    copyAllExplicitColoursTo (slider);
    copyAllExplicitColoursTo (nameLabel);
}

void ParameterLabelSlider::setTooltip (const juce::String& text)
{
    SettableTooltipClient::setTooltip (text);
    slider.setTooltip (text);
    nameLabel.setTooltip (text);
    valueLabel.setTooltip (text);

    // The slider hands its tooltip to its value box only then.
    slider.sendLookAndFeelChange();
}

void ParameterLabelSlider::showValue()
{
    valueLabel.setText (slider.getTextFromValue (slider.getValue()), juce::dontSendNotification);
}

void ParameterLabelSlider::typeValue (const juce::String& typed)
{
    if (! slider.steps)
        return;

    if (field == nullptr)
        field = std::make_unique<luna::ValueField> (slider, [this] (const auto& text)
                                                    { return slider.steps->type (text); });

    // A little larger than the value, and not over the name above it.
    constexpr auto width = 64, height = 18;
    const auto shown = slider.getLookAndFeel().getSliderLayout (slider).textBoxBounds;
    const auto area = shown.isEmpty() ? slider.getLocalBounds() : shown.withHeight (height);
    field->open (area.withSizeKeepingCentre (width, height), slider.steps->getText(), typed);
}

} // namespace tessarin
