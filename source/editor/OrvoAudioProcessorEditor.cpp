#include "OrvoAudioProcessorEditor.h"

#include "common/ColourIds.h"
#include "common/ParameterIds.h"
#include "common/Rounding.h"
#include "common/Sections.h"

#include <vector>

namespace
{
constexpr auto minimumWidth = 977;
constexpr auto minimumHeight = 800;
constexpr auto maximumWidth = 2000;
constexpr auto maximumHeight = 1500;

constexpr auto inputPanelWidth = 140;

/** What the panels leave to the strips at both sides. */
constexpr auto stripsWidth = 440;

constexpr auto panelRowHeight = 462;
constexpr auto bandEditorHeight = 100;
} // namespace

OrvoAudioProcessorEditor::OrvoAudioProcessorEditor (OrvoAudioProcessor& owner)
    : TessarinEditor (owner),
      audioProcessor (owner),
      waveformGraph (owner.waveformTaps),
      bandEditor (owner.spectrum, owner.parameters, ParameterIds::crossoverLow, ParameterIds::crossoverHigh),
      lowBandEditor (&owner.lowBandClipper, sectionTable[SectionRow::lowBand].id, owner.parameters,
                     owner.stateLock),
      midBandEditor (&owner.midBandClipper, sectionTable[SectionRow::midBand].id, owner.parameters,
                     owner.stateLock),
      highBandEditor (&owner.highBandClipper, sectionTable[SectionRow::highBand].id, owner.parameters,
                      owner.stateLock),
      midChannelEditor (&owner.midChannelClipper, sectionTable[SectionRow::midChannel].id, owner.parameters,
                        owner.stateLock),
      sideChannelEditor (&owner.sideChannelClipper, sectionTable[SectionRow::sideChannel].id,
                         owner.parameters, owner.stateLock),
      leftChannelEditor (&owner.leftChannelClipper, sectionTable[SectionRow::leftChannel].id,
                         owner.parameters, owner.stateLock),
      rightChannelEditor (&owner.rightChannelClipper, sectionTable[SectionRow::rightChannel].id,
                          owner.parameters, owner.stateLock),
      singleEditor (&owner.singleClipper, sectionTable[SectionRow::single].id, owner.parameters,
                    owner.stateLock),
      postEditor (&owner.postClipper, sectionTable[SectionRow::post].id, owner.parameters, owner.stateLock),
      inputPanel (owner.parameters),
      outputPanel (owner)
{
    addPanels();
    addContent();

    for (const auto* id : { ParameterIds::layout, ParameterIds::enable })
        parameters.addParameterListener (id, this);

    setResizable (true, true);
    setSize (audioProcessor.editorWidth, audioProcessor.editorHeight);
    setResizeLimits (minimumWidth, minimumHeight, maximumWidth, maximumHeight);

    // A child that is added is not told of its new look and feel.
    sendLookAndFeelChange();
}

OrvoAudioProcessorEditor::~OrvoAudioProcessorEditor()
{
    for (const auto* id : { ParameterIds::enable, ParameterIds::layout })
        parameters.removeParameterListener (id, this);
}

void OrvoAudioProcessorEditor::addPanels()
{
    const auto primary = findColour (luna::ColourIds::primaryColourId);

    for (size_t row = 0; row < numSections; ++row)
    {
        auto& panel = *panels[row];
        addChildComponent (panel);

        const auto colour = primary.withRotatedHue (sectionTable[row].hueRotation);
        panel.setColour (luna::ColourIds::primaryColourId, colour);
        panel.setColour (luna::ColourIds::sliderTrackColourId, colour);
        panel.setName (sectionTable[row].title);
    }
}

void OrvoAudioProcessorEditor::addContent()
{
    addAndMakeVisible (waveformGraph);
    waveformGraph.setTooltip (
        "Waveform Graph: The filled waveform is the input to the plugin, and the line is the output");

    addChildComponent (bandEditor);
    bandEditor.readBandColours();

    addAndMakeVisible (inputPanel);
    addAndMakeVisible (outputPanel);
}

int OrvoAudioProcessorEditor::getChoice (const char* parameterId) const
{
    return roundToChoice (parameters.getRawParameterValue (parameterId)->load());
}

void OrvoAudioProcessorEditor::updateLayout()
{
    audioProcessor.editorWidth = getWidth();
    audioProcessor.editorHeight = getHeight();

    const auto layout = getChoice (ParameterIds::layout);
    enableContent (getChoice (ParameterIds::enable) != 0);
    placeContent (layout);
}

void OrvoAudioProcessorEditor::enableContent (bool shouldBeEnabled)
{
    for (auto* component :
         std::initializer_list<juce::Component*> { &waveformGraph, &bandEditor, &inputPanel, &outputPanel })
        component->setEnabled (shouldBeEnabled);

    for (auto* panel : panels)
        panel->setEnabled (shouldBeEnabled);
}

void OrvoAudioProcessorEditor::placeContent (int layout)
{
    std::vector<MultiModeClipperEditor*> shown;

    for (size_t row = 0; row < numSections; ++row)
    {
        const auto isShown = sectionTable[row].isIn (layout);
        panels[row]->setVisible (isShown);

        if (isShown)
            shown.push_back (panels[row]);
    }

    const auto showsBands = layout == Layout::multiBand;
    bandEditor.setVisible (showsBands);

    const auto panelWidth = (getWidth() - stripsWidth) / static_cast<int> (shown.size());

    juce::FlexBox row;
    row.items.add (juce::FlexItem (inputPanel).withWidth (inputPanelWidth));

    for (auto* panel : shown)
        row.items.add (juce::FlexItem (*panel).withWidth (static_cast<float> (panelWidth)));

    row.items.add (juce::FlexItem (outputPanel).withFlex (1.0f));

    juce::FlexBox column;
    column.flexDirection = juce::FlexBox::Direction::column;
    column.items.add (juce::FlexItem (waveformGraph).withFlex (1.0f));

    if (showsBands)
        column.items.add (juce::FlexItem (bandEditor).withHeight (bandEditorHeight));

    column.items.add (juce::FlexItem (row).withHeight (panelRowHeight));
    column.performLayout (getContentArea());
}

void OrvoAudioProcessorEditor::parameterChanged (const juce::String&, float)
{
    layoutUpdate.post();
}

void OrvoAudioProcessorEditor::stateReloaded (juce::ValueTree&)
{
    for (auto* panel : panels)
        panel->loadViewMode();
}
