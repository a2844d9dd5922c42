#include "ParameterUnit.h"

#include <array>
#include <cmath>

namespace luna
{

struct ParameterUnit::Kind
{
    const char* text;

    /** Of a typed number, to the parameter's value. */
    double factor;

    /** In the parameter's values, or as a ratio. */
    double step;

    bool isRatio = false;
    bool hasSilence = false;
};

namespace
{
/** What a number may be written with: the value's sign, its digits, and one decimal point. */
bool isNumber (const juce::String& text)
{
    const auto digits = text.substring (text.startsWithChar ('-') || text.startsWithChar ('+') ? 1 : 0);

    return digits.containsOnly ("0123456789.") && digits.containsAnyOf ("0123456789")
           && digits.indexOfChar ('.') == digits.lastIndexOfChar ('.');
}

/** The text without its end, and whether it had it. */
bool cut (juce::String& text, juce::StringRef end)
{
    if (! text.endsWith (end))
        return false;

    text = text.dropLastCharacters (end.length()).trimEnd();
    return true;
}
} // namespace

ParameterUnit::ParameterUnit (const juce::RangedAudioParameter& parameter)
    : range (parameter.getNormalisableRange()),
      kind (
          [&parameter]() -> const Kind&
          {
              static const std::array kinds { Kind { "db", 1.0, 0.5, false, true }, Kind { "%", 0.01, 0.01 },
                                              Kind { "hz", 1.0, std::cbrt (2.0), true },
                                              Kind { "", 1.0, 0.0 } };
              const auto text = parameter.getText (parameter.getDefaultValue(), 0).toLowerCase();

              for (const auto& known : kinds)
                  if (text.endsWith (known.text))
                      return known;

              return kinds.back();
          }()),
      step (kind.step > 0.0 ? kind.step : 0.01 * static_cast<double> (range.end - range.start))
{
}

std::optional<float> ParameterUnit::parse (const juce::String& typed) const
{
    const auto minus = juce::String::charToString (0x2212), infinity = juce::String::charToString (0x221e);
    auto text = typed.trim().toLowerCase().replaceCharacter (',', '.').replace (minus, "-");

    cut (text, kind.text);
    const auto isThousands = kind.isRatio && cut (text, "k");

    if (kind.hasSilence && (text == "-inf" || text == "-" + infinity))
        return range.start;

    if (! isNumber (text))
        return {};

    const auto value = text.getDoubleValue() * kind.factor * (isThousands ? 1000.0 : 1.0);
    return static_cast<float> (
        juce::jlimit (static_cast<double> (range.start), static_cast<double> (range.end), value));
}

double ParameterUnit::above (double value, double steps) const
{
    return kind.isRatio ? value * std::pow (step, steps) : value + step * steps;
}

double ParameterUnit::stepsBetween (double lower, double higher) const
{
    return kind.isRatio ? std::log (higher / lower) / std::log (step) : (higher - lower) / step;
}

} // namespace luna
