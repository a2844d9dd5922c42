#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** Base of graphs of a level in dB over a logarithmic frequency axis. Owns the axes: their place, their
    colours, and the drawing of grid and labels. */
class LogGraphBase : public juce::Component, public juce::SettableTooltipClient
{
public:
    LogGraphBase();

    /** Called at the end of every layout, when `plot` may have moved. */
    virtual void plotChanged() {}

    void resized() override;

    void colourChanged() override { readColours(); }

    /** A new parent may bring another look and feel, which is not announced. */
    void parentHierarchyChanged() override { readColours(); }

    void enablementChanged() override { readColours(); }

    /** Decades of the frequency axis. */
    [[nodiscard]] double getDecades() const noexcept;

    /** Never outside the plot; 0 Hz stands at its left edge. */
    [[nodiscard]] float getXOf (double frequency) const noexcept;

    /** Outside the plot for levels that the axis does not hold. */
    [[nodiscard]] float getYOf (double db) const noexcept;

    /** Empty: one every 6 dB from `minimumDecibels`. */
    juce::Array<int> decibelLabels;

    int minimumDecibels = -18;
    int maximumDecibels = 18;

    /** In Hz. */
    int minFrequency = 17;
    int maxFrequency = 22050;

    /** The area between the axes. */
    juce::Rectangle<int> plot;

    juce::Colour backgroundColour;
    juce::Colour gridColour;
    juce::Colour gridTextColour;
    juce::Colour labelColour;

    /** `gridColour`, darker while disabled. */
    juce::Colour gridDrawColour;

    juce::Array<int> frequencyLines;
    juce::Array<int> frequencyLabels;

    /** Used below a width of 400. */
    juce::Array<int> narrowFrequencyLabels;

protected:
    void paintGrid (juce::Graphics&) const;
    void paintDecibelLabels (juce::Graphics&) const;
    void paintFrequencyLabels (juce::Graphics&) const;

    /** Repaints all of it, with the data of that moment. */
    void refresh();

    /** All of it is painted next, and need not fit what the screen shows. */
    bool isStale = true;

private:
    void readColours();
    [[nodiscard]] juce::Colour dimmedIfDisabled (juce::Colour) const;
    void paintDecibelLabel (juce::Graphics&, int db) const;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LogGraphBase)
};

} // namespace luna
