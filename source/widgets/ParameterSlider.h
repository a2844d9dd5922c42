#pragma once

#include "widgets/CommaValueSlider.h"
#include "widgets/EndlessDrag.h"
#include "widgets/ParameterSteps.h"

#include <functional>

namespace tessarin
{

/** The slider of a parameter: what mouse and keys do on it. All of it listens, the value's text too.

    A drag with the left button is JUCE's, which a held Ctrl or Alt makes finer the slower it is; with Shift it has a
    tenth of the speed. It does not end with the screen. Wheel and keys go in steps of the parameter's unit. Message
    thread.
*/
class ParameterSlider final : public CommaValueSlider
{
public:
    /** Without a parameter, wheel and keys do nothing. */
    explicit ParameterSlider (juce::RangedAudioParameter*);

    bool keyPressed (const juce::KeyPress&) override;

    /** Called when the user wants to type a value, with what the key gave already. */
    std::function<void (juce::String)> onTypingWanted;

    std::optional<luna::ParameterSteps> steps;

private:
    void mouseDown (const juce::MouseEvent&) override;
    void mouseDrag (const juce::MouseEvent&) override;
    void mouseUp (const juce::MouseEvent&) override;
    void mouseDoubleClick (const juce::MouseEvent&) override;
    void mouseWheelMove (const juce::MouseEvent&, const juce::MouseWheelDetails&) override;
    void lookAndFeelChanged() override;

    [[nodiscard]] float getPlaceOfValue();

    luna::EndlessDrag drag { *this, luna::EndlessDrag::Direction::vertical };

    /** Where the mouse would be at JUCE's speed on an endless screen, and the value where it was pressed. */
    juce::Point<float> place;
    double pressedValue = 0.0;
    bool wasByVelocity = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ParameterSlider)
};

} // namespace tessarin
