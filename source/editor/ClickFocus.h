#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** Lets the keyboard go where the user clicks, when the click also brings the window the focus.

    Some window managers take the focus from the window at every click and give it back, and all do so when the
    user comes from another window. The window is told of that only after the click, and JUCE then returns the
    keyboard to what had it before, so that a clicked text field would get no keys. This gives it back to what
    the click chose. Message thread.
*/
class ClickFocus final : private juce::MouseListener
{
public:
    explicit ClickFocus (juce::Component& editor);
    ~ClickFocus() override;

    /** To be told when nothing in the editor has the keyboard any more, before JUCE does anything about it. */
    void focusWasLost();

    /** Not longer ago than the window system takes for its answer. */
    [[nodiscard]] bool wasJustClicked() const;

private:
    void mouseDown (const juce::MouseEvent&) override
    {
        mayTakeBack = true;
        clickTime = juce::Time::getMillisecondCounter();
        keepFocus();
    }

    /** A button that opens a dialog does so here. */
    void mouseUp (const juce::MouseEvent&) override { keepFocus(); }

    void keepFocus();
    void takeBackForMenu();

    juce::Component& editor;

    /** Once for each click, so that nobody fights for it. */
    bool mayTakeBack = false;

    /** Of the last press, in ms as JUCE counts them. */
    juce::uint32 clickTime = 0;

    JUCE_DECLARE_WEAK_REFERENCEABLE (ClickFocus)
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ClickFocus)
};

} // namespace tessarin
