#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include <optional>

namespace luna
{

/** The unit in which a parameter's value is shown, as its own text tells: how long a step is, and what a typed text
    means. */
class ParameterUnit
{
public:
    /** The parameter outlives this. */
    explicit ParameterUnit (const juce::RangedAudioParameter&);

    /** A number with or without the unit, with a decimal point or comma; a frequency may end in "k" or "kHz", and
        "-inf" is the lowest of levels. What lies beyond the range is its end. Nothing if it is no such text. */
    [[nodiscard]] std::optional<float> parse (const juce::String& text) const;

    /** The value that lies a number of steps above another one: steps of 0.5 dB, 1 % or a third of an octave,
        whatever the range. */
    [[nodiscard]] double above (double value, double steps) const;

    /** How many steps one value lies above another one. */
    [[nodiscard]] double stepsBetween (double lower, double higher) const;

    [[nodiscard]] juce::Range<float> getRange() const noexcept { return range.getRange(); }

private:
    struct Kind;

    const juce::NormalisableRange<float>& range;
    const Kind& kind;

    /** In the parameter's values; of what has no unit, a hundredth of the range. */
    const double step;
};

} // namespace luna
