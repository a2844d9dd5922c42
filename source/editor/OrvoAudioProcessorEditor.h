#pragma once

#include "core/OrvoAudioProcessor.h"
#include "editor/InputPanel.h"
#include "editor/MultiModeClipperEditor.h"
#include "editor/OutputPanel.h"
#include "editor/PostedUpdate.h"
#include "editor/TessarinEditor.h"
#include "editor/ThreeBandSplitterEditor.h"
#include "widgets/WaveformGraph.h"

#include <vector>

/** The product's window. The panels of all layouts exist at all times; a change of layout only shows and places
    them.

    Message thread, but for `parameterChanged`, which any thread may call and which only posts.
*/
class OrvoAudioProcessorEditor final : public tessarin::TessarinEditor,
                                       public juce::AudioProcessorValueTreeState::Listener
{
public:
    /** Opens at the size that it had last, which the processor keeps. */
    explicit OrvoAudioProcessorEditor (OrvoAudioProcessor&);
    ~OrvoAudioProcessorEditor() override;

    void updateLayout() override;
    void stateReloaded (juce::ValueTree&) override;
    void parameterChanged (const juce::String&, float) override;

    OrvoAudioProcessor& audioProcessor;

    luna::WaveformGraph waveformGraph;
    ThreeBandSplitterEditor bandEditor;
    MultiModeClipperEditor lowBandEditor, midBandEditor, highBandEditor;
    MultiModeClipperEditor midChannelEditor, sideChannelEditor;
    MultiModeClipperEditor leftChannelEditor, rightChannelEditor;
    MultiModeClipperEditor singleEditor;
    MultiModeClipperEditor postEditor;
    InputPanel inputPanel;
    OutputPanel outputPanel;

private:
    void addPanels();
    void addContent();

    [[nodiscard]] int getChoice (const char* parameterId) const;

    void enableContent (bool shouldBeEnabled);
    void placeContent (int layout);

    /** By `SectionRow`. */
    const std::array<MultiModeClipperEditor*, numSections> panels {
        &lowBandEditor,     &midBandEditor,      &highBandEditor, &midChannelEditor, &sideChannelEditor,
        &leftChannelEditor, &rightChannelEditor, &singleEditor,   &postEditor
    };

    tessarin::PostedUpdate layoutUpdate { [this] { updateLayout(); } };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (OrvoAudioProcessorEditor)
};
