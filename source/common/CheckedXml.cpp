#include "CheckedXml.h"

#include "common/StrictUtf8.h"

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

struct FileContent
{
    enum class Kind
    {
        text,

        /** No regular file (reading a pipe would never end), or too large. */
        unfit,
        unreadable
    };

    Kind kind = Kind::unreadable;
    std::string text;
};

FileContent readFile (const juce::File& file)
{
    using Kind = FileContent::Kind;
    std::error_code failure;
    const auto status = std::filesystem::status (file.getFullPathName().toStdString(), failure);

    if (! std::filesystem::is_regular_file (status))
        return { std::filesystem::exists (status) ? Kind::unfit : Kind::unreadable, {} };

    juce::FileInputStream stream (file);

    if (stream.failedToOpen())
        return {};

    const auto length = stream.getTotalLength();

    if (length > static_cast<juce::int64> (largestXmlText))
        return { Kind::unfit, {} };

    std::string text (static_cast<size_t> (length), '\0');
    const auto numBytes = stream.read (text.data(), static_cast<int> (text.size()));

    // A network drive may fail only now.
    if (stream.getStatus().failed() || numBytes < 0)
        return {};

    text.resize (static_cast<size_t> (numBytes));
    return { Kind::text, std::move (text) };
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
        if ((depth == 0 && ++numRoots > 1) || ++numNames > mostNames)
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
        constexpr size_t mostAttributes = 128;
        const auto name = takeName();

        if (name.empty() || others.size() == mostAttributes || ++numNames > mostNames
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

        if (++numReferences > mostReferences)
            return false;

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

    /** Of tags and attributes. JUCE keeps each name in one sorted array for good: time grows with their square. */
    int numNames = 0;
    static constexpr auto mostNames = 10000;

    /** JUCE measures the text so far for each of them: their time, too, grows with the square. */
    int numReferences = 0;
    static constexpr auto mostReferences = 250000;
};
} // namespace

bool isCheckedXml (std::string_view text)
{
    text = skipByteOrderMark (text);
    return isPlainText (text) && MarkupCheck (text).passes();
}

std::unique_ptr<juce::XmlElement> parseCheckedXml (std::string_view text)
{
    return isCheckedXml (text) ? juce::parseXML (toString (skipByteOrderMark (text))) : nullptr;
}

std::unique_ptr<juce::XmlElement> parseCheckedXml (const juce::File& file)
{
    const auto content = readFile (file);
    return content.kind == FileContent::Kind::text ? parseCheckedXml (std::string_view (content.text))
                                                   : nullptr;
}

XmlFile checkXmlFile (const juce::File& file)
{
    const auto content = readFile (file);

    if (content.kind == FileContent::Kind::unreadable)
        return XmlFile::unreadable;

    return content.kind == FileContent::Kind::text && isCheckedXml (content.text) ? XmlFile::good
                                                                                  : XmlFile::damaged;
}

std::optional<juce::String> loadCheckedText (const juce::File& file)
{
    const auto content = readFile (file);

    if (content.kind != FileContent::Kind::text || ! isPlainText (content.text))
        return {};

    return toString (skipByteOrderMark (content.text));
}

} // namespace tessarin
