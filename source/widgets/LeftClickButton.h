#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** Base of the buttons whose state only the left mouse button drives; a press of the right one is a gesture
    of its own. */
class LeftClickButton : public juce::Button
{
public:
    explicit LeftClickButton (const juce::String& name);

    void mouseDown (const juce::MouseEvent&) override;
    void mouseDrag (const juce::MouseEvent&) override;
    void mouseUp (const juce::MouseEvent&) override;

    void lookAndFeelChanged() override { repaint(); }

protected:
    virtual void rightButtonPressed() = 0;
};

} // namespace luna
