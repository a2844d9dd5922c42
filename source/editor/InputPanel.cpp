#include "InputPanel.h"

#include "common/FontHeights.h"
#include "common/ParameterIds.h"
#include "common/Sections.h"
#include "widgets/PixelPicture.h"

InputPanel::InputPanel (juce::AudioProcessorValueTreeState& state)
    : layoutButtons (ParameterIds::layout, state, toStringArray (Layout::names)),
      inGainSlider ("In Gain", ParameterIds::inGain, state),
      oversamplingButtons (ParameterIds::oversampling, state, toStringArray (Oversampling::names))
{
    setName ("Input");

    for (auto* child : std::initializer_list<juce::Component*> {
             &layoutLabel, &layoutButtons, &oversamplingLabel, &oversamplingButtons, &inGainSlider })
        addAndMakeVisible (*child);

    layoutLabel.setText ("Mode", juce::dontSendNotification);
    oversamplingLabel.setText ("Oversampling", juce::dontSendNotification);

    for (auto* label : { &layoutLabel, &oversamplingLabel })
    {
        label->setFont (juce::FontOptions (luna::FontHeights::control));
        label->setJustificationType (juce::Justification::centred);
        luna::bufferToPixels (*label);
    }

    setTooltips();
}

void InputPanel::setTooltips()
{
    inGainSlider.setTooltip ("In Gain: Apply gain adjustment before entering the clipping stage");

    // The layouts' texts stand on the first four oversampling buttons, as released.
    const juce::StringArray oversamplingTexts { "Oversampling: None", "Oversampling: 2x", "Oversampling: 4x",
                                                "Oversampling: 8x", "Oversampling: 16x" };
    const juce::StringArray layoutTexts { "Single Band: Two clippers in series",
                                          "Multi Band: Three clppers with adjustable frequency bands",
                                          "Mid/Side: A clipper for each of the mid and side channels",
                                          "Left/Right: A clipper for each of the left and right channels" };

    for (const auto& texts : { oversamplingTexts, layoutTexts })
        for (auto i = 0; i < texts.size(); ++i)
            oversamplingButtons.buttons[i]->setTooltip (texts[i]);
}

void InputPanel::layoutContent()
{
    constexpr auto rowHeight = 20.0f;
    const auto content = getContentBounds();
    const auto width = static_cast<float> (content.getWidth());
    const auto layoutHeight = rowHeight * static_cast<float> (layoutButtons.buttons.size());
    const auto oversamplingHeight = rowHeight * static_cast<float> (oversamplingButtons.buttons.size());

    juce::FlexBox layoutGroup;
    layoutGroup.flexDirection = juce::FlexBox::Direction::column;
    layoutGroup.items = { juce::FlexItem (layoutLabel).withHeight (rowHeight),
                          juce::FlexItem (layoutButtons).withHeight (layoutHeight) };

    juce::FlexBox oversamplingGroup;
    oversamplingGroup.flexDirection = juce::FlexBox::Direction::column;
    oversamplingGroup.items = { juce::FlexItem (oversamplingLabel).withHeight (rowHeight),
                                juce::FlexItem (oversamplingButtons).withHeight (oversamplingHeight) };

    juce::FlexBox column;
    column.flexDirection = juce::FlexBox::Direction::column;
    column.alignItems = juce::FlexBox::AlignItems::center;
    column.justifyContent = juce::FlexBox::JustifyContent::spaceBetween;
    column.items = {
        juce::FlexItem (layoutGroup).withWidth (width).withHeight (rowHeight + layoutHeight),
        juce::FlexItem (oversamplingGroup).withWidth (width).withHeight (rowHeight + oversamplingHeight),
        juce::FlexItem (inGainSlider).withWidth (60.0f).withHeight (95.0f)
    };
    column.performLayout (content);
}
