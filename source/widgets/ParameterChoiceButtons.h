#pragma once

#include "widgets/BetterTextButton.h"
#include "widgets/ParameterMenu.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <atomic>

namespace luna
{

/** A row or column of buttons tied to one choice parameter. Message thread, but for `parameterChanged`, which
    any thread may call and which only stores the choice and posts. */
class ParameterChoiceButtons : public juce::Component,
                               public juce::Button::Listener,
                               public juce::AudioProcessorValueTreeState::Listener,
                               public juce::AsyncUpdater
{
public:
    enum Orientation
    {
        byAspectRatio = 0,
        column = 1,
        row = 2
    };

    ParameterChoiceButtons (juce::String parameterId, juce::AudioProcessorValueTreeState& state,
                            juce::StringArray labels);
    ~ParameterChoiceButtons() override;

    void resized() override;
    void buttonClicked (juce::Button*) override;
    void parameterChanged (const juce::String&, float newValue) override;
    void handleAsyncUpdate() override;

    juce::OwnedArray<BetterTextButton> buttons;
    juce::String parameterId;
    juce::AudioProcessorValueTreeState* state;

    static constexpr auto noIndexYet = -1;
    std::atomic<int> currentIndex { noIndexYet };

    int orientation = column;

    /** Between two buttons, in pixels. */
    int spacing = 0;

private:
    ParameterMenu menu;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ParameterChoiceButtons)
};

} // namespace luna
