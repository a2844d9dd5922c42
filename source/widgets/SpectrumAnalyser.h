#pragma once

#include "dsp/SpectrumData.h"
#include "widgets/LogGraphBase.h"

namespace luna
{

/** The present spectrum as an area, and its maximum since the last click as a line over it.

    Message thread; copies its source's magnitudes once per frame.
*/
class SpectrumAnalyser : public LogGraphBase, public juce::Timer
{
public:
    enum Layer
    {
        backgroundLayer = 1,
        gridLayer = 4,
        frequencyLabelLayer = 8,
        decibelLabelLayer = 16,
        spectrumLayer = 32,
        heldLayer = 64
    };

    /** `source` outlives the graph. */
    explicit SpectrumAnalyser (const SpectrumData& source);

    /** Called at the very end of `paint`. */
    virtual void paintOverlay (juce::Graphics&) {}

    void timerCallback() override;
    void paint (juce::Graphics&) override;
    void mouseDown (const juce::MouseEvent&) override;

    /** Where a magnitude stands at a frequency in Hz. */
    [[nodiscard]] juce::Point<float> getPointOf (double frequency, float magnitude) const noexcept;

    float fillAlpha = 0.5f;
    const SpectrumData* source;
    juce::Array<float> heldMagnitudes;

    /** Flags of `Layer`. */
    int layers =
        backgroundLayer | gridLayer | frequencyLabelLayer | decibelLabelLayer | spectrumLayer | heldLayer;

private:
    bool readSource();
    void rebuildPaths();
    void paintSpectrum (juce::Graphics&);

    // Kept from frame to frame for their storage.
    juce::Array<float> magnitudes, newMagnitudes;
    juce::Path spectrumPath;
    juce::Path heldPath;
    juce::Path heldStroke;
    double sampleRate = 0.0;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SpectrumAnalyser)
};

} // namespace luna
