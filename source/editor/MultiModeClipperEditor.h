#pragma once

#include "dsp/MultiModeClipper.h"
#include "editor/PostedUpdate.h"
#include "widgets/IconButton.h"
#include "widgets/Panel.h"
#include "widgets/ParameterLabelSlider.h"
#include "widgets/ParameterMenu.h"
#include "widgets/SaturatorGraph.h"

#include <memory>
#include <vector>

/** Edits one clipper section: its curve, mode and controls, arranged by the width that the panel is given.

    Parameter values live in the tree. The panel reads two things from the section itself: whether it is
    enabled, and its mode. Message thread, but for the section's mode changes, which may come from the audio
    thread and only post.
*/
class MultiModeClipperEditor final : public luna::Panel, public juce::SettableTooltipClient
{
public:
    /** `stateLock` guards the tree against hosts that capture or restore it on other threads. All outlive the
        panel. */
    MultiModeClipperEditor (MultiModeClipper* clipper, juce::String sectionId,
                            juce::AudioProcessorValueTreeState& state, juce::CriticalSection& stateLock);
    ~MultiModeClipperEditor() override;

    void lookAndFeelChanged() override;
    void layoutContent() override;

    /** Takes the graph's view from the tree. */
    void loadViewMode();

    tessarin::ParameterLabelSlider thresholdSlider;
    tessarin::ParameterLabelSlider shapeSlider;
    tessarin::ParameterLabelSlider makeupSlider;
    luna::SaturatorGraph graph;
    juce::ComboBox modeBox;
    std::unique_ptr<juce::ComboBoxParameterAttachment> modeAttachment;
    juce::Label modeLabel;
    luna::IconButton enableButton;
    std::unique_ptr<juce::ButtonParameterAttachment> enableAttachment;
    luna::IconButton linkButton;
    std::unique_ptr<juce::ButtonParameterAttachment> linkAttachment;

private:
    void setUpGraph();
    void setUpModeBox();
    void setUpButton (luna::IconButton&, std::unique_ptr<juce::ButtonParameterAttachment>&,
                      const juce::String& parameterId);
    void addChildren();
    void setTooltips();

    void saveViewMode (luna::SaturatorGraph::ViewMode);
    void modeChanged();
    void updateShape();
    void updateEnablement();
    [[nodiscard]] juce::String getShapeLabel() const;
    [[nodiscard]] bool isOn (const juce::String& parameterId) const;

    void layOutWide (juce::Rectangle<int> content);
    void layOutStacked (juce::Rectangle<int> content);
    void layOutCompact (juce::Rectangle<int> content);
    void layOutNarrow (juce::Rectangle<int> content);
    void fitGraph (juce::FlexItem& spacer);

    MultiModeClipper* clipper;

    /** As last copied from the section. */
    luna::Saturator* currentSaturator;

    const juce::String sectionId;
    juce::AudioProcessorValueTreeState* state;
    juce::CriticalSection& stateLock;

    /** They tell of every change of "enable" and "link" once the section has it. */
    std::vector<std::unique_ptr<juce::ParameterAttachment>> enablementWatches;

    luna::ParameterMenu modeMenu, enableMenu, linkMenu;

    tessarin::PostedUpdate modeUpdate { [this] { modeChanged(); } };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (MultiModeClipperEditor)
};
