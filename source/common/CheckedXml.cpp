#include "CheckedXml.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <string>
#include <vector>

namespace tessarin
{

namespace
{
constexpr auto deepestLevel = 32;
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view whitespace = " \t\r\n";

bool isBlank (char c)
{
    return whitespace.find (c) != std::string_view::npos;
}

std::string_view trim (std::string_view text)
{
    const auto end = text.find_last_not_of (whitespace);
    return text.substr (0, end == std::string_view::npos ? 0 : end + 1);
}

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

bool isPlainText (std::string_view text)
{
    return text.size() <= largestXmlText && text.find ('\0') == std::string_view::npos && isStrictUtf8 (text);
}

std::string_view skipByteOrderMark (std::string_view text)
{
    if (text.substr (0, byteOrderMark.size()) == byteOrderMark)
        text.remove_prefix (byteOrderMark.size());

    return text;
}

juce::String toString (std::string_view text)
{
    return juce::String::fromUTF8 (text.data(), static_cast<int> (text.size()));
}

/** Nothing if it is no regular file (reading a pipe would never end), too large, or unreadable. */
std::optional<std::string> readFile (const juce::File& file)
{
    std::error_code notFound;

    if (! std::filesystem::is_regular_file (file.getFullPathName().toStdString(), notFound))
        return {};

    juce::FileInputStream stream (file);

    if (stream.failedToOpen() || stream.getTotalLength() > static_cast<juce::int64> (largestXmlText))
        return {};

    std::string content (static_cast<size_t> (stream.getTotalLength()), '\0');
    const auto numBytes = stream.read (content.data(), static_cast<int> (content.size()));

    if (numBytes < 0)
        return {};

    content.resize (static_cast<size_t> (numBytes));
    return content;
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
        // Outside the root there is nothing but blanks.
        if (depth == 0 && ! isBlank (text.front()))
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

        if (depth == 0 || end == std::string_view::npos)
            return false;

        // JUCE's parser does not compare the names.
        if (trim (text.substr (2, end - 2)) != openNames[static_cast<size_t> (--depth)])
            return false;

        text.remove_prefix (end + 1);
        return true;
    }

    bool checkOpeningTag()
    {
        if (depth == 0 && ++numRoots > 1)
            return false;

        text.remove_prefix (1);
        const auto name = takeName();
        std::vector<std::string_view> attributes;

        if (name.empty())
            return false;

        for (;;)
        {
            skip (whitespace);

            if (startsWith (">"))
            {
                text.remove_prefix (1);
                return open (name);
            }

            if (startsWith ("/>"))
            {
                text.remove_prefix (2);
                return true;
            }

            if (! checkAttribute (attributes))
                return false;
        }
    }

    /** JUCE's parser leaves a tag without an error where a value has no quotes, and takes what follows for
        text. */
    bool checkAttribute (std::vector<std::string_view>& others)
    {
        constexpr size_t mostAttributes = 64;
        const auto name = takeName();

        if (name.empty() || others.size() == mostAttributes
            || std::find (others.begin(), others.end(), name) != others.end())
            return false;

        // A tree would decode the value, and allocate whatever size it claims.
        if (name.substr (0, 7) == "base64:")
            return false;

        others.push_back (name);
        skip (whitespace);

        if (! startsWith ("="))
            return false;

        text.remove_prefix (1);
        skip (whitespace);

        return (startsWith ("\"") || startsWith ("'")) && checkQuoted (text.front());
    }

    std::string_view takeName()
    {
        const auto name = text.substr (0, text.find_first_of (" \t\r\n/>=\"'<&"));
        text.remove_prefix (name.size());
        return name;
    }

    bool open (std::string_view name)
    {
        if (depth == deepestLevel)
            return false;

        openNames[static_cast<size_t> (depth++)] = name;
        return true;
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
    std::array<std::string_view, deepestLevel> openNames;
    int depth = 0;
    int numRoots = 0;
};
} // namespace

std::unique_ptr<juce::XmlElement> parseCheckedXml (std::string_view text)
{
    text = skipByteOrderMark (text);

    if (! isPlainText (text) || ! MarkupCheck (text).passes())
        return nullptr;

    return juce::parseXML (toString (text));
}

std::unique_ptr<juce::XmlElement> parseCheckedXml (const juce::File& file)
{
    const auto content = readFile (file);
    return content ? parseCheckedXml (std::string_view (*content)) : nullptr;
}

std::optional<juce::String> loadCheckedText (const juce::File& file)
{
    const auto content = readFile (file);

    if (! content || ! isPlainText (*content))
        return {};

    return toString (skipByteOrderMark (*content));
}

} // namespace tessarin
