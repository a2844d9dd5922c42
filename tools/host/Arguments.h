#pragma once

#include <juce_core/juce_core.h>

#include <vector>

/** An option that a command knows. */
struct Option
{
    const char* name;

    /** What stands for the value in the usage text; null for a switch without a value. */
    const char* value;

    const char* help;
};

/** A command's words, split into operands and options. Options may stand anywhere; "--" ends them. */
class Arguments
{
public:
    /** Throws on an unknown option, and on an option without its value. */
    Arguments (const juce::StringArray& words, const std::vector<Option>& known);

    [[nodiscard]] bool has (juce::StringRef option) const { return ! valuesOf (option).isEmpty(); }

    /** Every value of an option in the order given; an empty string for each mention of a switch. */
    [[nodiscard]] juce::StringArray valuesOf (juce::StringRef option) const;

    /** The last value of an option, or `fallback`. */
    [[nodiscard]] juce::String valueOf (juce::StringRef option, const juce::String& fallback) const;

    /** The last value of an option as a number. Throws if it is none or outside `least` to `most`. */
    [[nodiscard]] double numberOf (juce::StringRef option, double fallback, double least, double most) const;

    /** The same for a whole number. */
    [[nodiscard]] int integerOf (juce::StringRef option, int fallback, int least, int most) const;

    juce::StringArray operands;

private:
    std::vector<std::pair<juce::String, juce::String>> options;
};

/** A file named on the command line, relative to the working folder. */
[[nodiscard]] juce::File fileFromOperand (const juce::String& operand);
