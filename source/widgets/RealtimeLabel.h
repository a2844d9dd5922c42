#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <limits>

/** A readout of two lines, a name and a value that it polls about 30 times a second. Disabled, it shows "-".

    `source` is written by the audio thread without a lock and must outlive the label. Message thread.
*/
class RealtimeLabel : public juce::Component, public juce::Timer, public juce::SettableTooltipClient
{
public:
    /** An empty function shows the value with two decimal places. */
    RealtimeLabel (const float* source, juce::String name, std::function<juce::String (float)> valueToString);

    void mouseDown (const juce::MouseEvent&) override;
    bool keyPressed (const juce::KeyPress&) override;

    void lookAndFeelChanged() override { readLookAndFeel(); }

    void parentHierarchyChanged() override { readLookAndFeel(); }

    void enablementChanged() override { refresh(); }

    void paint (juce::Graphics&) override;
    void resized() override;

    /** Repaints if the text has changed. */
    void timerCallback() override;

    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

    /** The value as shown. */
    [[nodiscard]] juce::String getValueText() const;

    /** Any mouse button, the space bar and the return key. */
    std::function<void()> onClick;
    std::function<juce::String (float)> valueToString;
    const float* source;

    /** Above it, the value has a frame. */
    float greatestPlainValue = std::numeric_limits<float>::infinity();

    juce::String name;
    juce::Colour textColour, highlightedTextColour, backgroundColour, disabledTextColour;
    juce::Font nameFont, valueFont;
    juce::FlexBox rows;

private:
    /** False if that means nothing. */
    bool press();

    void readLookAndFeel();
    void refresh();
    void drawFrame (juce::Graphics&) const;

    /** The only place that reads beside the audio thread's writing. */
    [[nodiscard]] float readSource() const { return *source; }

    [[nodiscard]] bool standsOut() const { return isEnabled() && readSource() > greatestPlainValue; }

    juce::String shownText;
    bool hasFrame = false;

    /** The last one that was compared with the text; no number before. */
    float comparedValue = std::numeric_limits<float>::quiet_NaN();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (RealtimeLabel)
};
