#pragma once

#include "common/ColourIds.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** What table and tree of the browser share: which row lies under the mouse, and a frame while the tab key's focus is
    here. Becomes a mouse listener of the view that holds the rows. Message thread. */
class BrowserList : public juce::Component
{
public:
    /** Of a row's component. */
    [[nodiscard]] bool isUnderMouse (const juce::Component* row) const
    {
        return row != nullptr && row == hovered;
    }

    void mouseEnter (const juce::MouseEvent& event) override { hover (event, event.eventComponent); }

    void mouseExit (const juce::MouseEvent& event) override { hover (event, nullptr); }

    void paintOverChildren (juce::Graphics& g) override
    {
        if (! showsFocus)
            return;

        g.setColour (findColour (luna::ColourIds::highlightedTextColourId));
        g.drawRect (getLocalBounds(), 2);
    }

protected:
    /** The keys act here after a click, too, but the eye is there already. */
    void showFocus (bool hasFocus, FocusChangeType cause)
    {
        showsFocus = hasFocus && cause == focusChangedByTabKey;
        repaint();
    }

private:
    void hover (const juce::MouseEvent& event, juce::Component* row)
    {
        hovered = row;
        event.eventComponent->repaint();
    }

    juce::Component::SafePointer<juce::Component> hovered;
    bool showsFocus = false;
};

} // namespace tessarin
