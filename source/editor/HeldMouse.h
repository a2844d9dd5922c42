#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** Lets go of the mouse when its window closes with a button held.

    JUCE keeps for all windows of the process which buttons are down, and a release that comes when the window is gone
    reaches nobody: the next press, in any window, would pass for the one that was never released. To be made before
    an editor's children, so that it goes after them: what was pressed is not to be clicked. Message thread.
*/
class HeldMouse final
{
public:
    explicit HeldMouse (juce::Component& editorToWatch) : editor (editorToWatch) {}

    ~HeldMouse();

private:
    juce::Component& editor;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (HeldMouse)
};

} // namespace tessarin
