#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace tessarin
{

/** A rounded label that is switched on and off with a click, or with space or return. Message thread. */
class CategoryBadge final : public juce::Component, public juce::SettableTooltipClient
{
public:
    explicit CategoryBadge (const juce::String& text);

    /** In pixels, for the whole text. */
    [[nodiscard]] int getIdealWidth() const { return idealWidth; }

    /** Calls `onChange` if it is a change and a notification is asked for. */
    void setSelected (bool shouldBeSelected, juce::NotificationType notification);

    void paint (juce::Graphics&) override;

    void mouseEnter (const juce::MouseEvent&) override { setUnderMouse (true); }

    void mouseExit (const juce::MouseEvent&) override { setUnderMouse (false); }

    void mouseUp (const juce::MouseEvent&) override;
    bool keyPressed (const juce::KeyPress&) override;

    void focusGained (FocusChangeType) override { repaint(); }

    void focusLost (FocusChangeType) override { repaint(); }

    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

    const juce::String text;
    bool selected = false;
    std::function<void()> onLeftClick;

    /** The delete keys do the same. */
    std::function<void()> onRightClick;
    std::function<void()> onChange;

private:
    void setUnderMouse (bool isNowUnderMouse);

    const int idealWidth;
    bool isUnderMouse = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CategoryBadge)
};

} // namespace tessarin
