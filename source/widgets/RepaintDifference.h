#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** Asks for a repaint of what lies in one of the areas and not in the other, such as where a bar has grown. Called in
    each frame: a list of rectangles would allocate. Message thread. */
inline void repaintDifference (juce::Component& component, juce::Rectangle<int> a, juce::Rectangle<int> b)
{
    const auto whole = a.getUnion (b);
    const auto common = a.getIntersection (b);

    if (common.isEmpty())
    {
        component.repaint (whole);
        return;
    }

    component.repaint (whole.withBottom (common.getY()));
    component.repaint (whole.withTop (common.getBottom()));
    component.repaint (whole.withRight (common.getX()));
    component.repaint (whole.withLeft (common.getRight()));
}

} // namespace luna
