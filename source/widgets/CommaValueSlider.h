#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** A slider that takes a decimal comma for a decimal point, and whose cursor keys are gestures, for hosts that record
    automation. */
class CommaValueSlider : public juce::Slider
{
public:
    using juce::Slider::Slider;

    double getValueFromText (const juce::String& text) override
    {
        return juce::Slider::getValueFromText (text.replaceCharacter (',', '.'));
    }

    bool keyPressed (const juce::KeyPress& key) override
    {
        using Key = juce::KeyPress;

        if (key != Key::upKey && key != Key::downKey && key != Key::leftKey && key != Key::rightKey)
            return juce::Slider::keyPressed (key);

        const ScopedDragNotification gesture (*this);
        return juce::Slider::keyPressed (key);
    }
};

} // namespace tessarin
