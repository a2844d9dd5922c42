#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** Whether the key presses what has the focus. */
[[nodiscard]] inline bool isPress (const juce::KeyPress& key)
{
    return key == juce::KeyPress (juce::KeyPress::spaceKey)
           || key == juce::KeyPress (juce::KeyPress::returnKey);
}

} // namespace luna
