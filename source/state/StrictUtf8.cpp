#include "StrictUtf8.h"

#include <array>

namespace tessarin
{

namespace
{
/** In bytes; 0 if the text, which is not empty, begins with none. */
size_t lengthOfFirstCharacter (std::string_view text)
{
    constexpr std::array<juce::uint32, 5> smallestOfLength { 0, 0, 0x80, 0x800, 0x10000 };

    const auto lead = static_cast<juce::uint8> (text.front());
    const auto length = lead < 0x80   ? 1u
                        : lead < 0xc0 ? 0u
                        : lead < 0xe0 ? 2u
                        : lead < 0xf0 ? 3u
                        : lead < 0xf8 ? 4u
                                      : 0u;

    if (length == 0 || length > text.size())
        return 0;

    auto codePoint = length == 1 ? juce::uint32 { lead } : lead & (0x7fu >> length);

    for (auto k = 1u; k < length; ++k)
    {
        const auto next = static_cast<juce::uint8> (text[k]);

        if ((next & 0xc0) != 0x80)
            return 0;

        codePoint = (codePoint << 6) | (next & 0x3fu);
    }

    return codePoint >= smallestOfLength[length] && isUnicodeScalar (codePoint) ? length : 0;
}
} // namespace

bool isUnicodeScalar (juce::uint32 codePoint)
{
    return codePoint <= 0x10ffff && ! (codePoint >= 0xd800 && codePoint <= 0xdfff);
}

bool isStrictUtf8 (std::string_view text)
{
    while (! text.empty())
    {
        const auto length = lengthOfFirstCharacter (text);

        if (length == 0)
            return false;

        text.remove_prefix (length);
    }

    return true;
}

juce::String makeValidText (const juce::String& path)
{
    std::string_view rest (path.toRawUTF8());

    if (isStrictUtf8 (rest))
        return path;

    juce::MemoryOutputStream valid;

    while (! rest.empty())
    {
        const auto length = lengthOfFirstCharacter (rest);

        if (length == 0)
            valid << "\xef\xbf\xbd" << juce::String::toHexString (rest.data(), 1);
        else
            valid.write (rest.data(), length);

        rest.remove_prefix (juce::jmax (length, size_t { 1 }));
    }

    return valid.toUTF8();
}

} // namespace tessarin
