#include "CheckedXml.h"

#include <array>
#include <charconv>

namespace tessarin
{

namespace
{
constexpr auto deepestLevel = 32;
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view whitespace = " \t\r\n";

bool isUnicodeScalar (juce::uint32 codePoint)
{
    return codePoint <= 0x10ffff && ! (codePoint >= 0xd800 && codePoint <= 0xdfff);
}

/** The Unicode standard's table 3-7: shortest forms only, no surrogates. */
bool isStrictUtf8 (std::string_view text)
{
    constexpr std::array<juce::uint32, 5> smallestOfLength { 0, 0, 0x80, 0x800, 0x10000 };

    for (size_t i = 0; i < text.size();)
    {
        const auto lead = static_cast<juce::uint8> (text[i]);
        const auto length = lead < 0x80   ? 1u
                            : lead < 0xc0 ? 0u
                            : lead < 0xe0 ? 2u
                            : lead < 0xf0 ? 3u
                            : lead < 0xf8 ? 4u
                                          : 0u;

        if (length == 0 || i + length > text.size())
            return false;

        auto codePoint = length == 1 ? juce::uint32 { lead } : lead & (0x7fu >> length);

        for (auto k = 1u; k < length; ++k)
        {
            const auto next = static_cast<juce::uint8> (text[i + k]);

            if ((next & 0xc0) != 0x80)
                return false;

            codePoint = (codePoint << 6) | (next & 0x3fu);
        }

        if (codePoint < smallestOfLength[length] || ! isUnicodeScalar (codePoint))
            return false;

        i += length;
    }

    return true;
}

/** Walks the text's markup once. Each step consumes what it accepts and says whether it did. */
class MarkupCheck
{
public:
    explicit MarkupCheck (std::string_view textToCheck) : text (textToCheck) {}

    bool passes()
    {
        skip (whitespace);

        if (startsWith ("<?xml") && ! skipPast ("?>"))
            return false;

        while (! text.empty())
            if (! (text.front() == '<' ? checkMarkup() : checkText()))
                return false;

        return depth == 0 && numRoots == 1;
    }

private:
    bool checkText()
    {
        const auto isBlank = whitespace.find (text.front()) != std::string_view::npos;

        // Outside the root there is nothing but blanks.
        if (depth == 0 && ! isBlank)
            return false;

        if (text.front() == '&')
            return checkReference();

        text.remove_prefix (1);
        return true;
    }

    bool checkMarkup()
    {
        if (startsWith ("<!--"))
        {
            text.remove_prefix (4);
            return skipPast ("-->");
        }

        if (startsWith ("<!") || startsWith ("<?"))
            return false;

        return startsWith ("</") ? checkClosingTag() : checkOpeningTag();
    }

    bool checkClosingTag()
    {
        const auto end = text.find ('>');

        if (depth == 0 || end == std::string_view::npos
            || text.substr (1, end).find ('<') != std::string_view::npos)
            return false;

        --depth;
        text.remove_prefix (end + 1);
        return true;
    }

    bool checkOpeningTag()
    {
        if (depth == 0 && ++numRoots > 1)
            return false;

        text.remove_prefix (1);
        auto previous = '<';

        while (! text.empty())
        {
            const auto c = text.front();

            if (c == '<')
                return false;

            if (c == '"' || c == '\'')
            {
                if (! checkQuoted (c))
                    return false;

                previous = c;
                continue;
            }

            text.remove_prefix (1);

            if (c == '>')
                return previous == '/' || ++depth <= deepestLevel;

            previous = c;
        }

        return false;
    }

    bool checkQuoted (char quote)
    {
        text.remove_prefix (1);

        while (! text.empty() && text.front() != quote)
        {
            if (text.front() == '<')
                return false;

            if (text.front() != '&')
                text.remove_prefix (1);
            else if (! checkReference())
                return false;
        }

        if (text.empty())
            return false;

        text.remove_prefix (1);
        return true;
    }

    bool checkReference()
    {
        constexpr size_t longestReference = 12;
        const auto end = text.substr (0, longestReference).find (';');

        if (end == std::string_view::npos)
            return false;

        const auto name = text.substr (1, end - 1);
        text.remove_prefix (end + 1);

        if (! name.empty() && name.front() == '#')
            return isCodePoint (name.substr (1));

        return name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos";
    }

    static bool isCodePoint (std::string_view digits)
    {
        auto base = 10;

        if (! digits.empty() && (digits.front() == 'x' || digits.front() == 'X'))
        {
            base = 16;
            digits.remove_prefix (1);
        }

        juce::uint32 codePoint = 0;
        const auto* end = digits.data() + digits.size();
        const auto result = std::from_chars (digits.data(), end, codePoint, base);
        return result.ec == std::errc() && result.ptr == end && codePoint != 0 && isUnicodeScalar (codePoint);
    }

    bool startsWith (std::string_view prefix) const { return text.substr (0, prefix.size()) == prefix; }

    void skip (std::string_view characters)
    {
        text.remove_prefix (std::min (text.find_first_not_of (characters), text.size()));
    }

    bool skipPast (std::string_view marker)
    {
        const auto position = text.find (marker);

        if (position == std::string_view::npos)
            return false;

        text.remove_prefix (position + marker.size());
        return true;
    }

    std::string_view text;
    int depth = 0;
    int numRoots = 0;
};
} // namespace

std::unique_ptr<juce::XmlElement> parseCheckedXml (std::string_view text)
{
    if (text.substr (0, byteOrderMark.size()) == byteOrderMark)
        text.remove_prefix (byteOrderMark.size());

    const auto isAcceptable = text.size() <= largestXmlText && text.find ('\0') == std::string_view::npos
                              && isStrictUtf8 (text) && MarkupCheck (text).passes();

    if (! isAcceptable)
        return nullptr;

    return juce::parseXML (juce::String::fromUTF8 (text.data(), static_cast<int> (text.size())));
}

std::unique_ptr<juce::XmlElement> parseCheckedXml (const juce::File& file)
{
    juce::FileInputStream stream (file);

    if (stream.failedToOpen() || stream.getTotalLength() > static_cast<juce::int64> (largestXmlText))
        return nullptr;

    juce::MemoryBlock content;
    stream.readIntoMemoryBlock (content, static_cast<juce::int64> (largestXmlText) + 1);
    return parseCheckedXml (
        std::string_view (static_cast<const char*> (content.getData()), content.getSize()));
}

} // namespace tessarin
