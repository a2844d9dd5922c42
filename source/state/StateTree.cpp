#include "StateTree.h"

#include <charconv>
#include <cmath>

namespace tessarin::StateTree
{

namespace
{
const juce::Identifier parameterType { "PARAM" };
const juce::Identifier parameterId { "id" };
const juce::Identifier parameterValue { "value" };

bool isFiniteNumber (const juce::var& value)
{
    auto text = value.toString().trim().toStdString();

    if (! text.empty() && text.front() == '+')
        text.erase (0, 1);

    auto number = 0.0f;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars (text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end && std::isfinite (number);
}

/** What the parameter state takes for an entry: any child with an id. */
bool isUsable (const juce::ValueTree& child)
{
    return ! child.hasProperty (parameterId)
           || (child.hasType (parameterType) && isFiniteNumber (child.getProperty (parameterValue)));
}
} // namespace

juce::String makeTag (const juce::String& productName)
{
    return productName.toLowerCase().removeCharacters (" \t\r\n");
}

void normaliseTag (juce::XmlElement& root)
{
    root.setTagName (root.getTagName().toLowerCase());

    if (root.getTagName() == "pivotstate")
        root.setTagName ("pivot");
}

void sanitise (juce::ValueTree& root)
{
    for (auto i = root.getNumChildren(); --i >= 0;)
        if (! isUsable (root.getChild (i)))
            root.removeChild (i, nullptr);

    root.getOrCreateChildWithName (graphModes, nullptr);
}

void addMissingParameters (juce::ValueTree& root, const juce::AudioProcessorValueTreeState& parameters,
                           MissingValue missingValue)
{
    for (const auto* parameter : parameters.processor.getParameters())
    {
        const auto* ranged = static_cast<const juce::RangedAudioParameter*> (parameter);
        const auto& id = ranged->paramID;

        if (root.getChildWithProperty (parameterId, id).isValid())
            continue;

        const auto value = missingValue == MissingValue::present
                               ? parameters.getRawParameterValue (id)->load()
                               : ranged->convertFrom0to1 (ranged->getDefaultValue());

        root.appendChild (
            { parameterType, { { parameterId, id }, { parameterValue, static_cast<double> (value) } } },
            nullptr);
    }
}

std::vector<std::pair<const juce::RangedAudioParameter*, float>>
getValues (const juce::ValueTree& root, const juce::AudioProcessorValueTreeState& parameters)
{
    std::vector<std::pair<const juce::RangedAudioParameter*, float>> values;

    for (const auto& child : root)
        if (const auto* parameter = parameters.getParameter (child[parameterId].toString()))
            values.emplace_back (parameter, parameter->convertTo0to1 (child[parameterValue]));

    return values;
}

juce::ValueTree makeBareState (const juce::ValueTree& root,
                               const juce::AudioProcessorValueTreeState& parameters)
{
    juce::ValueTree bare (root.getType());

    for (const auto& kept : { presetPath, version })
        if (root.hasProperty (kept))
            bare.setProperty (kept, root[kept], nullptr);

    sanitise (bare);
    addMissingParameters (bare, parameters, MissingValue::present);
    return bare;
}

} // namespace tessarin::StateTree
