#include "TessarinProcessor.h"

#include "common/Rounding.h"

namespace tessarin
{

TessarinProcessor::TessarinProcessor (const BusesProperties& buses)
    : juce::AudioProcessor (buses), parameters (*this, nullptr)
{
}

TessarinProcessor::~TessarinProcessor()
{
    removeParameterListeners();
    stopTimer();
}

const juce::String TessarinProcessor::getName() const
{
    return JucePlugin_Name;
}

void TessarinProcessor::processBlock (juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midi)
{
    const juce::ScopedNoDenormals noDenormals;

    if (licenceManager.isAudioBlocked())
    {
        buffer.clear();
        midi.clear();
        return;
    }

    processAudio (buffer);
}

int TessarinProcessor::getNumPrograms()
{
    return 1;
}

int TessarinProcessor::getCurrentProgram()
{
    return 0;
}

void TessarinProcessor::setCurrentProgram (int)
{
}

const juce::String TessarinProcessor::getProgramName (int)
{
    return {};
}

void TessarinProcessor::getStateInformation (juce::MemoryBlock&)
{
}

void TessarinProcessor::setStateInformation (const void*, int)
{
}

bool TessarinProcessor::isBusesLayoutSupported (const BusesLayout& layouts) const
{
    constexpr auto mostChannels = 2;

    const auto input = layouts.getMainInputChannelSet();
    const auto output = layouts.getMainOutputChannelSet();

    return input.size() <= mostChannels && output.size() <= mostChannels && input == output
           && input.size() >= 1;
}

void TessarinProcessor::addParameterFloat (juce::String id, juce::String name, float min, float max,
                                           float defaultValue, juce::String unit, int decimals, bool listen)
{
    auto toText = [unit = std::move (unit), decimals] (float value) {
        return (decimals == 0 ? juce::String (juce::roundToInt (value)) : juce::String (value, decimals))
               + unit;
    };

    addParameterRange (std::move (id), std::move (name), { min, max }, defaultValue, std::move (toText), {},
                       listen);
}

void TessarinProcessor::addParameterChoice (juce::String id, juce::String name, juce::StringArray choices,
                                            int defaultIndex, bool listen)
{
    const auto last = static_cast<float> (choices.size() - 1);
    auto toText = [choices = std::move (choices)] (float value) { return choices[roundToChoice (value)]; };

    addParameterRange (std::move (id), std::move (name), { 0.0f, last }, static_cast<float> (defaultIndex),
                       std::move (toText), {}, listen);
}

void TessarinProcessor::addParameterBool (juce::String id, juce::String name, juce::String offText,
                                          juce::String onText, bool defaultValue, bool listen)
{
    auto toText = [offText = std::move (offText), onText = std::move (onText)] (float value)
    { return roundToSwitch (value) ? onText : offText; };

    addParameterRange (std::move (id), std::move (name), { 0.0f, 1.0f }, defaultValue ? 1.0f : 0.0f,
                       std::move (toText), {}, listen);
}

void TessarinProcessor::addParameterRange (juce::String id, juce::String name,
                                           juce::NormalisableRange<float> range, float defaultValue,
                                           std::function<juce::String (float)> valueToText,
                                           std::function<float (const juce::String&)> textToValue,
                                           bool listen)
{
    using Parameter = juce::AudioProcessorValueTreeState::Parameter;
    constexpr auto versionHint = 1;

    auto attributes = juce::AudioProcessorValueTreeStateParameterAttributes();

    if (valueToText)
        attributes = attributes.withStringFromValueFunction (
            [valueToText = std::move (valueToText)] (float value, int) { return valueToText (value); });

    if (textToValue)
        attributes = attributes.withValueFromStringFunction (std::move (textToValue));

    parameters.createAndAddParameter (std::make_unique<Parameter> (juce::ParameterID { id, versionHint },
                                                                   name, range, defaultValue, attributes));

    if (listen)
    {
        parameters.addParameterListener (id, this);
        listenedParameterIds.add (id);
    }
}

void TessarinProcessor::removeParameterListeners()
{
    for (const auto& id : listenedParameterIds)
        parameters.removeParameterListener (id, this);

    listenedParameterIds.clear();
}

} // namespace tessarin
