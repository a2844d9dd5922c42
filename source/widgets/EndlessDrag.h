#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** Lets a drag go on where the screen ends: there the pointer is set back to the middle of the screen, and only what
    the hand does is counted.

    It jumps by itself, where a component of JUCE could only ask for it: positions that were on their way to us at the
    jump would count as a long way back there. Message thread.
*/
class EndlessDrag
{
public:
    enum class Direction
    {
        vertical,
        horizontal
    };

    EndlessDrag (juce::Component& dragged, Direction);

    void begin (const juce::MouseEvent&);

    /** How far the mouse has come since the last call, in pixels of the component. */
    [[nodiscard]] juce::Point<float> move (const juce::MouseEvent&);

    /** Shows the pointer at this place of the component. */
    void end (const juce::MouseInputSource&, juce::Point<float> place);

    /** From the first movement or jump on, the pointer is not where it seems to be. */
    void hidePointer();

    [[nodiscard]] bool isOn() const noexcept { return isDragging; }

    [[nodiscard]] bool hasJumped() const noexcept { return jumped; }

    /** Where the mouse was pressed. */
    [[nodiscard]] juce::Point<float> getStart() const noexcept { return start; }

private:
    void jumpFromEdge (const juce::MouseInputSource&);

    juce::Component& component;
    const Direction direction;

    juce::Point<float> start, last, target;
    juce::MouseCursor shownCursor;
    bool isDragging = false, isHidden = false, jumped = false;

    /** Until the first position after the jump is heard. */
    bool isJumping = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (EndlessDrag)
};

} // namespace luna
