#include "ThemeResolver.h"

#include "common/ThemeNames.h"

#include <LunaBinary.h>

namespace tessarin::ThemeResolver
{

namespace
{
constexpr auto defaultAmount = 0.4f;

juce::Colour parseLiteral (const juce::String& text)
{
    const auto digits = text.toLowerCase();

    if (digits.length() == 6 && digits.containsOnly ("0123456789abcdef"))
        return juce::Colour::fromString ("FF" + digits);

    juce::Logger::writeToLog ("The colour '" + text + "' appears to be invalid");
    return juce::Colours::orange;
}

juce::Colour getVariable (const juce::var& theme, const juce::String& name)
{
    if (! theme.hasProperty ("variables"))
    {
        juce::Logger::writeToLog ("Unable to find the theme variables section in theme file");
        return juce::Colours::red;
    }

    const auto variables = theme["variables"];

    if (name.isEmpty() || ! variables.hasProperty (juce::Identifier (name)))
    {
        juce::Logger::writeToLog ("Unable to find variable '" + name + "' in theme file");
        return juce::Colours::blue;
    }

    return parseLiteral (variables[juce::Identifier (name)].toString());
}

juce::Colour darken (juce::Colour colour, float amount)
{
    const auto factor = 1.0f / (1.0f + amount);
    const auto scale = [factor] (juce::uint8 channel)
    { return static_cast<juce::uint8> (static_cast<float> (channel) * factor); };

    return { scale (colour.getRed()), scale (colour.getGreen()), scale (colour.getBlue()),
             colour.getAlpha() };
}

juce::Colour resolveValue (const juce::var& theme, const juce::String& value)
{
    if (! value.startsWithChar ('$'))
        return parseLiteral (value);

    const auto pieces = juce::StringArray::fromTokens (value, " ", {});
    const auto colour = getVariable (theme, pieces[0].removeCharacters ("$"));
    const auto amount = pieces.size() > 2 ? pieces[2].getFloatValue() : defaultAmount;

    if (pieces[1] == "brighter")
        return colour.brighter (amount);

    if (pieces[1] == "darker")
        return darken (colour, amount);

    return colour;
}
} // namespace

juce::var parseEmbeddedTheme (const juce::String& name)
{
    if (! getEmbeddedThemeNames().contains (name))
        return {};

    auto size = 0;
    const auto* text = LunaBinary::getNamedResource ((name + "_json").toRawUTF8(), size);
    return juce::JSON::parse (juce::String::fromUTF8 (text, size));
}

const juce::StringArray& getEmbeddedThemeNames()
{
    static const juce::StringArray names = toStringArray (embeddedThemeNames);
    return names;
}

juce::Colour getColour (const juce::var& theme, const juce::String& path)
{
    if (! theme.hasProperty ("colours"))
    {
        juce::Logger::writeToLog ("Unable to find the theme colours section in theme file");
        return juce::Colours::yellow;
    }

    auto node = theme["colours"];

    for (const auto& token : juce::StringArray::fromTokens (path, ".", {}))
    {
        // A token that is missing is passed over.
        if (token.isEmpty() || ! node.hasProperty (juce::Identifier (token)))
            continue;

        const auto value = node[juce::Identifier (token)];

        if (value.isString())
            return resolveValue (theme, value.toString());

        node = value;
    }

    juce::Logger::writeToLog ("Unable to find the  colour '" + path + "' section in theme file");
    return juce::Colours::green;
}

} // namespace tessarin::ThemeResolver
