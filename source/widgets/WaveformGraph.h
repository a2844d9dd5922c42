#pragma once

#include "dsp/WaveformHistory.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <utility>
#include <vector>

namespace luna
{

/** The last five seconds of levels, one column per pixel. The write position sweeps over the picture, which
    does not scroll; a line marks it.

    Message thread; sizes its history to its own width, and copies it once per frame.
*/
class WaveformGraph final : public juce::Component, public juce::Timer, public juce::SettableTooltipClient
{
public:
    /** The static part: lines and labels. The mouse sees the graph and not this. */
    class GraphBackground final : public juce::Component, public juce::SettableTooltipClient
    {
    public:
        explicit GraphBackground (WaveformGraph& owner);

        void paint (juce::Graphics&) override;
        void enablementChanged() override;

        /** The graph's, unless this has its own. */
        juce::String getTooltip() override;

    private:
        WaveformGraph& graph;

        JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (GraphBackground)
    };

    /** `history` outlives the graph. */
    explicit WaveformGraph (WaveformHistory& history);

    void resized() override;
    void paintOverChildren (juce::Graphics&) override;
    void colourChanged() override;
    void parentHierarchyChanged() override;
    void enablementChanged() override;
    void timerCallback() override;

    /** The background's, unless this has its own. */
    juce::String getTooltip() override;

    /** 0 above the range, the height below it. */
    [[nodiscard]] int getYOf (float db) const noexcept;

    WaveformHistory* history;
    GraphBackground background { *this };

    /** In dB. */
    juce::Array<int> ticks { -36, -30, -24, -18, -12, -6, 0, 6 };
    juce::NormalisableRange<float> range { -39.0f, 8.0f };

    /** What the columns leave free at the right. */
    int labelWidth = 30;

    /** `WaveformTap::Style` and colour of each tap. */
    juce::Array<std::pair<int, juce::Colour>> tapStyles;

    /** The last tap's. */
    juce::Colour lineColour;

private:
    void readColours();
    void readHistory();
    void paintBars (juce::Graphics&, const juce::Array<float>& values, juce::Colour);
    void paintLine (juce::Graphics&, const juce::Array<float>& values, juce::Colour);

    // Kept from frame to frame for their storage.
    std::vector<juce::Array<float>> tapValues;
    juce::Path barPath;
    juce::Path linePath;
    int writeIndex = 0;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (WaveformGraph)
};

} // namespace luna
