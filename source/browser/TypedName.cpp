#include "TypedName.h"

namespace tessarin
{

namespace
{
int findFrom (int start, const juce::StringArray& names, const juce::String& beginning)
{
    for (auto i = 0; i < names.size(); ++i)
        if (const auto index = (start + i) % names.size(); names[index].startsWithIgnoreCase (beginning))
            return index;

    return -1;
}
} // namespace

int TypedName::type (juce::juce_wchar character, const juce::StringArray& names, int current)
{
    constexpr juce::uint32 longestPauseInMs = 1000;
    const auto now = getMillisecondCounter();
    const auto letter = juce::String::charToString (character);

    if (now - lastTime > longestPauseInMs)
        typed.clear();

    lastTime = now;
    typed << letter;

    // A longer beginning may still be that of the name which is current.
    if (typed.length() > 1)
        if (const auto index = findFrom (juce::jmax (0, current), names, typed); index >= 0)
            return index;

    const auto repeatsLetter = typed.retainCharacters (letter) == typed;
    return repeatsLetter ? findFrom (current + 1, names, letter) : -1;
}

} // namespace tessarin
