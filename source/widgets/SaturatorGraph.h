#pragma once

#include "dsp/Saturator.h"
#include "widgets/PixelPicture.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <vector>

namespace luna
{

/** A saturator's output over its input as a curve, filled up to the present level of its input.

    Both axes have one scale, so the plot is meant to be square. Message thread; reads the saturator without a
    lock.
*/
class SaturatorGraph final : public juce::Component, public juce::Timer, public juce::SettableTooltipClient
{
public:
    enum class ViewMode
    {
        decibels = 0,
        amplitude = 1
    };

    /** The static part: ground, lines and labels. The mouse sees the graph and not this. */
    class GraphBackground final : public juce::Component, public juce::SettableTooltipClient
    {
    public:
        explicit GraphBackground (SaturatorGraph& owner);

        void paint (juce::Graphics&) override;
        void enablementChanged() override;

        /** The graph's, unless this has its own. */
        juce::String getTooltip() override;

    private:
        void paintLines (juce::Graphics&, int value) const;
        void paintLabels (juce::Graphics&, int value) const;
        [[nodiscard]] juce::Point<int> positionOf (int value) const;

        SaturatorGraph& graph;

        JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (GraphBackground)
    };

    SaturatorGraph();

    void resized() override;

    void colourChanged() override { readColours(); }

    /** A new parent may bring another look and feel, which is not announced. */
    void parentHierarchyChanged() override { readColours(); }

    void enablementChanged() override { refresh(); }

    void paintOverChildren (juce::Graphics&) override;
    void mouseDown (const juce::MouseEvent&) override;
    bool keyPressed (const juce::KeyPress&) override;
    void timerCallback() override;

    /** The background's, unless this has its own. */
    juce::String getTooltip() override;

    /** Does not call `onViewModeChange`. */
    void setViewMode (ViewMode);

    /** Where a value of the present scale stands on the vertical axis, in pixels; clamped to the plot. */
    [[nodiscard]] float getYOf (float value) const noexcept;

    /** The same on the horizontal axis, which rises to the right. */
    [[nodiscard]] float getXOf (float value) const noexcept;

    /** The columns that an input level fills: from the left in decibels, from the centre in amplitude. */
    [[nodiscard]] juce::Rectangle<int> getLevelArea (float envelope) const noexcept;

    /** Runs when the user picks a mode from the menu. */
    std::function<void (ViewMode)> onViewModeChange;

private:
    // A frame moves the edge of what is filled, and draws no path anew. The background lets go of them until its end.
    PixelPicture fillPicture { *this, [this] (juce::Graphics& g) { paintFill (g); } };
    PixelPicture linePicture { *this, [this] (juce::Graphics& g) { paintLines (g); } };

public:
    GraphBackground background { *this };

    juce::NormalisableRange<float> amplitudeRange { -1.2f, 1.2f };
    juce::NormalisableRange<float> decibelRange { -30.0f, 6.0f };
    int decibelStep = 6;

    /** No margin, no grid and a thinner curve, below a width of 100. */
    bool compact = false;

    /** May change at any time; without one there is only the background. */
    Saturator* saturator = nullptr;

    juce::Rectangle<int> plot;
    ViewMode viewMode = ViewMode::decibels;

    juce::Path curvePath;
    juce::Path fillPath;
    juce::Path identityPath;
    juce::Path referencePath;

    juce::Colour curveColour;
    juce::Colour backgroundColour;
    juce::Colour lineColour;
    juce::Colour disabledLineColour;

    /** Whether a right click opens the menu, or the keyboard. */
    bool menuEnabled = false;

private:
    [[nodiscard]] const juce::NormalisableRange<float>& getRange() const noexcept;
    [[nodiscard]] float proportionOf (float value) const noexcept;

    void readColours();
    void showMenu (juce::Rectangle<int> areaOnScreen);

    void refresh();
    bool updateCurve();
    [[nodiscard]] float getInputOf (int column) const noexcept;
    void computeOutputs (std::vector<float>& results) const;

    void rebuildPaths();
    void rebuildAmplitudePaths();
    void rebuildDecibelPaths();
    void addReferenceLine (float value);
    void addColumn (int column, float input);
    void finishPaths();
    void paintFill (juce::Graphics&) const;
    void paintLines (juce::Graphics&) const;
    void invalidatePictures();
    void releasePictures();

    // The lines as areas, of which no more is computed when only a colour or the place changes.
    juce::Path curveStroke;
    juce::Path identityStroke;
    juce::Path referenceStroke;

    /** Whose curve the paths show. */
    const Saturator* drawnSaturator = nullptr;

    /** The curve's output for each column of the plot, on the present scale. */
    std::vector<float> outputs, newOutputs;

    /** The columns that are filled. */
    juce::Rectangle<int> levelArea;

    /** All of it is painted next, and need not fit what the screen shows. */
    bool isStale = true;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SaturatorGraph)
};

} // namespace luna
