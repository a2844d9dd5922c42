#include "EndlessDrag.h"

namespace luna
{

EndlessDrag::EndlessDrag (juce::Component& dragged, Direction d) : component (dragged), direction (d)
{
}

void EndlessDrag::begin (const juce::MouseEvent& event)
{
    start = last = event.position;
    isDragging = true;
    isHidden = jumped = isJumping = false;
}

juce::Point<float> EndlessDrag::move (const juce::MouseEvent& event)
{
    const auto position = event.position;

    if (isJumping && position.getDistanceFrom (target) < position.getDistanceFrom (last))
    {
        last = target;
        isJumping = false;
    }

    const auto moved = position - last;
    last = position;

    if (! isJumping)
        jumpFromEdge (event.source);

    return moved;
}

void EndlessDrag::jumpFromEdge (const juce::MouseInputSource& mouse)
{
    constexpr auto edge = 2.0f;
    const auto place = component.localPointToGlobal (last);
    const auto* display = juce::Desktop::getInstance().getDisplays().getDisplayForPoint (place.roundToInt());

    if (display == nullptr)
        return;

    const auto screen = display->totalArea.toFloat();
    const auto isVertical = direction == Direction::vertical;
    const auto inner = isVertical ? screen.reduced (0.0f, edge) : screen.reduced (edge, 0.0f);
    const auto isAtEdge = isVertical ? place.y < inner.getY() || place.y >= inner.getBottom() - 1.0f
                                     : place.x < inner.getX() || place.x >= inner.getRight() - 1.0f;

    if (! isAtEdge)
        return;

    hidePointer();
    const auto middle = isVertical ? place.withY (std::round (screen.getCentreY()))
                                   : place.withX (std::round (screen.getCentreX()));
    target = component.getLocalPoint (nullptr, middle);
    isJumping = jumped = true;
    juce::MouseInputSource (mouse).setScreenPosition (middle);
}

void EndlessDrag::hidePointer()
{
    const auto hasScreen = juce::Desktop::getInstance().getDisplays().getPrimaryDisplay() != nullptr;

    if (isHidden || ! hasScreen)
        return;

    isHidden = true;

    shownCursor = component.getMouseCursor();
    component.setMouseCursor (juce::MouseCursor::NoCursor);
}

void EndlessDrag::end (const juce::MouseInputSource& mouse, juce::Point<float> place)
{
    isDragging = false;

    if (! std::exchange (isHidden, false))
        return;

    juce::MouseInputSource (mouse).setScreenPosition (component.localPointToGlobal (place));
    component.setMouseCursor (shownCursor);
}

} // namespace luna
