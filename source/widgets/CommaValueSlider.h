#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** A slider that takes a decimal comma for a decimal point. */
class CommaValueSlider : public juce::Slider
{
public:
    using juce::Slider::Slider;

    double getValueFromText (const juce::String& text) override
    {
        return juce::Slider::getValueFromText (text.replaceCharacter (',', '.'));
    }
};

} // namespace tessarin
