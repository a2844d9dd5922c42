#pragma once

#include "dsp/WaveformHistory.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <utility>
#include <vector>

namespace luna
{

/** The last five seconds of levels, one column per pixel. The write position sweeps over the picture, which
    does not scroll; a line marks it.

    Message thread; sizes its history to its own width. Once a frame it copies the history and asks for a repaint of the
    columns that differ; a repaint of part of it draws that part of the copy.
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

    void colourChanged() override { readColours(); }

    /** A new parent may bring another look and feel, which is not announced. */
    void parentHierarchyChanged() override { readColours(); }

    void enablementChanged() override { refresh(); }

    void paintOverChildren (juce::Graphics&) override;
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
    /** The y of every column of a tap. */
    using Columns = std::vector<int>;

    /** What the screen shows. */
    struct Picture
    {
        std::vector<Columns> taps;
        int writeIndex = 0;
    };

    void refresh();
    void readColours();
    void readHistory();
    void repaintChanges();
    [[nodiscard]] bool differsAt (int x) const noexcept;
    void paintTaps (juce::Graphics&, juce::Range<int> shown);
    void paintBars (juce::Graphics&, const Columns&, juce::Range<int> shown, juce::Colour);
    void paintLine (juce::Graphics&, const Columns&, juce::Range<int> shown, juce::Colour);

    Picture picture, previous;

    /** All of it is painted next, and need not fit what the screen shows. */
    bool isStale = true;

    /** Of the history, when it was read. */
    juce::uint32 shownChangeCount = 0;

    // Kept from frame to frame for their storage.
    std::vector<juce::Array<float>> tapValues;
    juce::Path barPath;
    juce::Path linePath;
    juce::Path lineStroke;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (WaveformGraph)
};

} // namespace luna
