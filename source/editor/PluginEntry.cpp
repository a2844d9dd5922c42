// Where the VST3 wrapper and the processor meet the editor, which stands above both.

#include "core/OrvoAudioProcessor.h"
#include "editor/OrvoAudioProcessorEditor.h"

juce::AudioProcessorEditor* OrvoAudioProcessor::createEditor()
{
    return new OrvoAudioProcessorEditor (*this);
}

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter();

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter()
{
    return new OrvoAudioProcessor();
}
