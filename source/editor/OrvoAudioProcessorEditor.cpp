#include "OrvoAudioProcessorEditor.h"

#include "common/ColourIds.h"
#include "common/ParameterIds.h"
#include "common/Rounding.h"

#include <algorithm>

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
      lowBandEditor (&owner.lowBandClipper, "low_band", owner.parameters, owner.stateLock),
      midBandEditor (&owner.midBandClipper, "mid_band", owner.parameters, owner.stateLock),
      highBandEditor (&owner.highBandClipper, "high_band", owner.parameters, owner.stateLock),
      midChannelEditor (&owner.midChannelClipper, "mid_channel", owner.parameters, owner.stateLock),
      sideChannelEditor (&owner.sideChannelClipper, "high_channel", owner.parameters, owner.stateLock),
      leftChannelEditor (&owner.leftChannelClipper, "left_channel", owner.parameters, owner.stateLock),
      rightChannelEditor (&owner.rightChannelClipper, "right_channel", owner.parameters, owner.stateLock),
      singleEditor (&owner.singleClipper, "single", owner.parameters, owner.stateLock),
      postEditor (&owner.postClipper, "post", owner.parameters, owner.stateLock),
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
    struct Title
    {
        MultiModeClipperEditor* panel;
        const char* name;
        float hueRotation;
    };

    const auto primary = findColour (luna::ColourIds::primaryColourId);

    for (const auto& [panel, name, hueRotation] :
         { Title { &lowBandEditor, "Low", 0.0f }, Title { &midBandEditor, "Mid", -0.25f },
           Title { &highBandEditor, "High", -0.5f }, Title { &midChannelEditor, "Mid", 0.0f },
           Title { &sideChannelEditor, "Side", -0.25f }, Title { &leftChannelEditor, "Left", 0.0f },
           Title { &rightChannelEditor, "Right", -0.25f }, Title { &singleEditor, "Clipper", 0.0f },
           Title { &postEditor, "Post", -0.75f } })
    {
        addChildComponent (*panel);

        const auto colour = primary.withRotatedHue (hueRotation);
        panel->setColour (luna::ColourIds::primaryColourId, colour);
        panel->setColour (luna::ColourIds::sliderTrackColourId, colour);
        panel->setName (name);
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

OrvoAudioProcessorEditor::Panels OrvoAudioProcessorEditor::getPanels()
{
    return { &lowBandEditor,     &midBandEditor,      &highBandEditor, &midChannelEditor, &sideChannelEditor,
             &leftChannelEditor, &rightChannelEditor, &singleEditor,   &postEditor };
}

OrvoAudioProcessorEditor::Panels OrvoAudioProcessorEditor::getPanelsOf (int layout)
{
    switch (layout)
    {
        case OrvoAudioProcessor::multiBand:
            return { &lowBandEditor, &midBandEditor, &highBandEditor, &postEditor };

        case OrvoAudioProcessor::midSide: return { &midChannelEditor, &sideChannelEditor, &postEditor };

        case OrvoAudioProcessor::leftRight: return { &leftChannelEditor, &rightChannelEditor, &postEditor };

        default: return { &singleEditor, &postEditor };
    }
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
    placeContent (getPanelsOf (layout), layout == OrvoAudioProcessor::multiBand);
}

void OrvoAudioProcessorEditor::enableContent (bool shouldBeEnabled)
{
    for (auto* component :
         std::initializer_list<juce::Component*> { &waveformGraph, &bandEditor, &inputPanel, &outputPanel })
        component->setEnabled (shouldBeEnabled);

    for (auto* panel : getPanels())
        panel->setEnabled (shouldBeEnabled);
}

void OrvoAudioProcessorEditor::placeContent (const Panels& shown, bool showsBands)
{
    for (auto* panel : getPanels())
        panel->setVisible (std::find (shown.begin(), shown.end(), panel) != shown.end());

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
    for (auto* panel : getPanels())
        panel->loadViewMode();
}
