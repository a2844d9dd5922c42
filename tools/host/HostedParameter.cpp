#include "HostedParameter.h"

#include "common/ParameterIds.h"
#include "common/Sections.h"
#include "Failure.h"

#include <charconv>
#include <cmath>

namespace
{
struct Number
{
    double value = 0.0;
    juce::String unit;
    bool isNumber = false;
};

Number parseNumber (const juce::String& text)
{
    const auto bytes = text.trim().trimCharactersAtStart ("+").toStdString();
    const auto* end = bytes.data() + bytes.size();

    Number number;
    const auto [rest, error] = std::from_chars (bytes.data(), end, number.value);

    number.isNumber = error == std::errc() && std::isfinite (number.value);
    number.unit = juce::String (std::string (rest, end)).trim();
    return number;
}
} // namespace

HostedParameter::HostedParameter (juce::AudioProcessorParameter& p, juce::String ownId,
                                  const juce::AudioProcessorParameter* texts)
    : parameter (p), id (std::move (ownId)), textSource (texts != nullptr ? *texts : p)
{
}

juce::String HostedParameter::textAt (float normalised) const
{
    return textSource.getText (normalised, 128);
}

void HostedParameter::setFromText (const juce::String& text)
{
    const auto least = parseNumber (textAt (0.0f));
    const auto most = parseNumber (textAt (1.0f));

    const auto isNumeric = least.isNumber && most.isNumber;
    parameter.setValue (isNumeric ? normalisedNumber (text, least.value, most.value, most.unit)
                                  : normalisedChoice (text));
}

juce::StringArray HostedParameter::choices() const
{
    // Fine enough to meet every choice: a multiple of all counts of steps up to six.
    constexpr auto probes = 240;
    juce::StringArray texts;

    for (auto i = 0; i <= probes; ++i)
        texts.addIfNotAlreadyThere (textAt (static_cast<float> (i) / probes));

    return texts;
}

float HostedParameter::normalisedChoice (const juce::String& text) const
{
    const auto texts = choices();
    const auto last = texts.size() - 1;
    auto index = texts.indexOf (text.trim(), true);

    if (index < 0)
    {
        const auto number = parseNumber (text);
        index = juce::roundToInt (juce::jlimit (-1.0, 1000.0, number.value));

        if (! number.isNumber || number.unit.isNotEmpty() || index < 0 || index > last)
            throw Failure (id + " is one of \"" + texts.joinIntoString ("\", \"") + "\", not \"" + text
                           + "\"");
    }

    return last > 0 ? static_cast<float> (index) / static_cast<float> (last) : 0.0f;
}

float HostedParameter::normalisedNumber (const juce::String& text, double least, double most,
                                         const juce::String& unit) const
{
    auto number = parseNumber (text);

    if (unit == "%" && number.unit.isEmpty())
        number.value *= 100.0;

    if (! number.isNumber || ! (number.unit.isEmpty() || number.unit.equalsIgnoreCase (unit)))
        throw Failure (id + " takes a number, from " + textAt (0.0f) + " to " + textAt (1.0f) + ", not \""
                       + text + "\"");

    if (number.value < least || number.value > most)
        throw Failure (id + " goes from " + textAt (0.0f) + " to " + textAt (1.0f) + ": \"" + text
                       + "\" is out of range");

    return static_cast<float> ((number.value - least) / (most - least));
}

juce::StringArray orvoParameterIds()
{
    using namespace ParameterIds;
    juce::StringArray ids { enable };

    for (const auto& section : sectionTable)
        for (const auto* prefix :
             { thresholdPrefix, shapePrefix, modePrefix, gainPrefix, enablePrefix, mutePrefix, linkPrefix })
            ids.add (section.idOf (prefix));

    ids.addArray ({ crossoverLow, crossoverHigh, soloBand, ParameterIds::layout, inGain, oversampling });
    return ids;
}
