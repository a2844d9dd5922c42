#pragma once

#include "widgets/Panel.h"

namespace luna
{

/** The strip that shows the tooltip of whatever is under the mouse. It polls, about 30 times a second. */
class TooltipPanel : public Panel, public juce::Timer
{
public:
    TooltipPanel();

    /** Takes the tooltip of the component under the mouse; over nothing, the last one stays. */
    virtual void refresh();

    /** A letter at the right end, for what is to be seen at all times. Empty for none. */
    void setMark (const juce::String& letter);

    void lookAndFeelChanged() override;

    void parentHierarchyChanged() override { readTextColour(); }

    void layoutContent() override;

    void timerCallback() override { refresh(); }

    juce::Label tooltipLabel;

    /** A text of licensing. */
    juce::Label statusLabel;
    bool hideStatusWhenTooltipShown = false;

private:
    juce::Label markLabel;

    void readTextColour();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (TooltipPanel)
};

} // namespace luna
