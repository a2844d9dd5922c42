#include "OrvoAudioProcessorEditor.h"

OrvoAudioProcessorEditor::OrvoAudioProcessorEditor (OrvoAudioProcessor& owner)
    : AudioProcessorEditor (owner), controls (owner)
{
    addAndMakeVisible (controls);
    setSize (controls.getWidth(), controls.getHeight());
}

void OrvoAudioProcessorEditor::resized()
{
    controls.setBounds (getLocalBounds());
}
