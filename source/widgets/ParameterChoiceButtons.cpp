#include "ParameterChoiceButtons.h"

#include "common/Rounding.h"
#include "widgets/ParameterGesture.h"
#include "widgets/PixelPicture.h"

namespace luna
{

ParameterChoiceButtons::ParameterChoiceButtons (juce::String id,
                                                juce::AudioProcessorValueTreeState& stateToUse,
                                                juce::StringArray labels)
    : parameterId (std::move (id)), state (&stateToUse), menu (*this, state->getParameter (parameterId))
{
    for (const auto& label : labels)
    {
        auto* button = buttons.add (std::make_unique<BetterTextButton> (label));
        addAndMakeVisible (*button);
        luna::bufferToPixels (*button);
        button->setToggleable (true);
        button->addListener (this);
    }

    state->addParameterListener (parameterId, this);

    // Unless the host has sent a newer one since the line above.
    auto none = noIndexYet;

    if (const auto* value = state->getRawParameterValue (parameterId))
        currentIndex.compare_exchange_strong (none, roundToChoice (value->load()));

    handleAsyncUpdate();
}

ParameterChoiceButtons::~ParameterChoiceButtons()
{
    state->removeParameterListener (parameterId, this);
}

void ParameterChoiceButtons::resized()
{
    const auto isRow = orientation == row || (orientation == byAspectRatio && getHeight() < getWidth());

    juce::FlexBox box;
    box.flexDirection = isRow ? juce::FlexBox::Direction::row : juce::FlexBox::Direction::column;

    for (auto* button : buttons)
    {
        juce::FlexItem item (*button);
        item.flexGrow = 1.0f;
        item.flexShrink = 1.0f;

        if (button != buttons.getLast())
            item.margin.right = static_cast<float> (spacing);

        box.items.add (item);
    }

    box.performLayout (getLocalBounds());
}

void ParameterChoiceButtons::buttonClicked (juce::Button* button)
{
    auto* parameter = state->getParameter (parameterId);

    if (parameter == nullptr)
        return;

    const auto index = buttons.indexOf (static_cast<BetterTextButton*> (button));
    const auto newValue = state->getParameterRange (parameterId).convertTo0to1 (static_cast<float> (index));

    setInOneGesture (*parameter, newValue);
}

void ParameterChoiceButtons::parameterChanged (const juce::String&, float newValue)
{
    currentIndex = roundToChoice (newValue);
    triggerAsyncUpdate();
}

void ParameterChoiceButtons::handleAsyncUpdate()
{
    for (auto i = 0; i < buttons.size(); ++i)
    {
        const auto isCurrent = i == currentIndex;
        buttons[i]->setToggleState (isCurrent, juce::dontSendNotification);

        // The active button cannot be clicked off.
        buttons[i]->setClickingTogglesState (! isCurrent);
    }
}

} // namespace luna
