#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** Whether the component and all that it lies in are visible, up to a window on the screen. Unlike
    juce::Component::isShowing, it does not ask the X server whether that window is minimised, which takes longer than
    to paint a frame. */
[[nodiscard]] inline bool isVisibleInWindow (const juce::Component& component)
{
    const auto* inner = &component;

    while (inner->isVisible() && inner->getParentComponent() != nullptr)
        inner = inner->getParentComponent();

    return inner->isVisible() && inner->isOnDesktop();
}

} // namespace luna
