#pragma once

#include "widgets/Panel.h"

namespace tessarin
{

/** Base of the dialogs: darkens the editor and shows a panel on top. A click on the dark area closes it. */
class ModalWindow : public juce::Component
{
public:
    explicit ModalWindow (const juce::String& title = "Modal Window");

    void mouseDown (const juce::MouseEvent&) override;
    void paint (juce::Graphics&) override;

    /** Escape closes, too. */
    bool keyPressed (const juce::KeyPress&) override;

    const juce::String title;
    bool closable = true;

    /** Set by derived classes in `resized`. */
    juce::Rectangle<int> panelBounds;
    int contentHeight = 50;
    int margin = 20;
    luna::Panel panel;

protected:
    /** For the button that the return key presses, with each new look and feel: in the primary colour, with an edge
        that is seen in every theme. */
    void colourAsDefault (juce::TextButton&);

    /** Where every dialog stands: 100 below the parent's top, or centred where that does not fit. */
    void placePanel (int panelHeight);

private:
    void close();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ModalWindow)
};

} // namespace tessarin
