#pragma once

#include <juce_core/juce_core.h>

#include <functional>

namespace tessarin
{

/** What is typed in quick succession to jump to a name that begins with it. Message thread. */
class TypedName final
{
public:
    /** Whether such a key is for names: a letter or a digit, by itself or with shift. */
    [[nodiscard]] static bool takes (juce::juce_wchar character)
    {
        return juce::CharacterFunctions::isLetterOrDigit (character);
    }

    /** Takes one more character, and returns the index of the name to go to from `current`, which may be -1: the next
        one that begins with what has been typed, round from the last to the first; -1 if none does. The same letter
        again and again goes from each such name to the next. */
    [[nodiscard]] int type (juce::juce_wchar character, const juce::StringArray& names, int current);

    /** Replaced by tests. */
    std::function<juce::uint32()> getMillisecondCounter = juce::Time::getMillisecondCounter;

private:
    juce::String typed;
    juce::uint32 lastTime = 0;
};

} // namespace tessarin
