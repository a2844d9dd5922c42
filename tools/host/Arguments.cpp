#include "Arguments.h"

#include "Failure.h"

#include <algorithm>
#include <cmath>

Arguments::Arguments (const juce::StringArray& words, const std::vector<Option>& known)
{
    auto optionsEnded = false;

    for (auto i = 0; i < words.size(); ++i)
    {
        const auto& word = words[i];

        if (optionsEnded || ! word.startsWithChar ('-') || word == "-")
        {
            operands.add (word);
            continue;
        }

        if (word == "--")
        {
            optionsEnded = true;
            continue;
        }

        const auto option =
            std::find_if (known.begin(), known.end(), [&] (const auto& o) { return word == o.name; });

        if (option == known.end())
            throw Failure ("unknown option " + word, Failure::wrongUsage);

        if (option->value == nullptr)
            options.emplace_back (word, juce::String());
        else if (++i < words.size())
            options.emplace_back (word, words[i]);
        else
            throw Failure (word + " needs a value: " + option->value, Failure::wrongUsage);
    }
}

juce::StringArray Arguments::valuesOf (juce::StringRef option) const
{
    juce::StringArray values;

    for (const auto& [name, value] : options)
        if (name == option)
            values.add (value);

    return values;
}

juce::String Arguments::valueOf (juce::StringRef option, const juce::String& fallback) const
{
    const auto values = valuesOf (option);
    return values.isEmpty() ? fallback : values[values.size() - 1];
}

double Arguments::numberOf (juce::StringRef option, double fallback, double least, double most) const
{
    if (! has (option))
        return fallback;

    const auto text = valueOf (option, {});
    const auto value = text.getDoubleValue();
    const auto isNumber = text.containsAnyOf ("0123456789") && text.containsOnly ("0123456789.")
                          && text.indexOfChar ('.') == text.lastIndexOfChar ('.');

    if (! isNumber || ! (value >= least && value <= most))
        throw Failure (juce::String (option) + " takes a number from " + juce::String (least) + " to "
                           + juce::String (most) + ", not \"" + text + "\"",
                       Failure::wrongUsage);

    return value;
}

int Arguments::integerOf (juce::StringRef option, int fallback, int least, int most) const
{
    const auto value = numberOf (option, fallback, least, most);

    if (std::floor (value) < value)
        throw Failure (juce::String (option) + " takes a whole number", Failure::wrongUsage);

    return juce::roundToInt (value);
}

juce::File fileFromOperand (const juce::String& operand)
{
    return juce::File::getCurrentWorkingDirectory().getChildFile (operand);
}
