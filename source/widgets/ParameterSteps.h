#pragma once

#include "widgets/ParameterUnit.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** Sets a parameter by keys, the mouse wheel and typed texts, each of them one gesture for the host.

    It goes in whole steps of the parameter's unit from the value on which it began, or in tenths of them, and stays on
    that grid when an end of the range, which lies between two steps, was on the way. Message thread.
*/
class ParameterSteps
{
public:
    /** The parameter outlives this. */
    explicit ParameterSteps (juce::RangedAudioParameter&);

    /** Cursor keys, page keys, both ends and "delete". False for keys that mean nothing here. */
    bool keyPressed (const juce::KeyPress&);

    void wheelMoved (const juce::MouseEvent&, const juce::MouseWheelDetails&);

    /** False, and nothing is set, for a text that is no value. */
    [[nodiscard]] bool type (const juce::String& text);

    void reset();

    /** What typing on a control begins with, if the key begins it: a digit or a minus, or nothing for the return key,
        which leaves the present value to be replaced. */
    [[nodiscard]] static std::optional<juce::String> getTypedBy (const juce::KeyPress&);

    [[nodiscard]] juce::String getText() const;

private:
    void move (int steps, bool isFine);
    void set (double value);
    [[nodiscard]] double getValue() const;

    juce::RangedAudioParameter& parameter;
    const ParameterUnit unit;

    /** Where the grid began, the part of a step between its points, and the value that was set last. */
    double origin = 0.0, spacing = 0.0, reached = 0.0;
};

} // namespace luna
