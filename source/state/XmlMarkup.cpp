#include "XmlMarkup.h"

#include "state/XmlCursor.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tessarin
{

namespace
{
constexpr auto deepestLevel = 32;

/** Walks the text's markup once. Each step consumes what it accepts and says whether it did. */
class MarkupCheck
{
public:
    explicit MarkupCheck (std::string_view textToCheck) : text (textToCheck) {}

    bool passes()
    {
        std::string_view header;
        text.skipBlanks();

        if (text.startsWith ("<?xml") && ! text.takeUntil ("?>", header))
            return false;

        while (! text.isAtEnd())
            if (! (text.startsWith ("<") ? checkMarkup() : checkText()))
                return false;

        return depth == 0 && numRoots == 1;
    }

private:
    bool checkText()
    {
        // Outside the root there is nothing but blanks.
        if (depth == 0 && ! text.startsWithBlank())
            return false;

        return checkCharacter();
    }

    bool checkCharacter()
    {
        if (text.startsWith ("&"))
            return ++numReferences <= mostReferences && text.acceptReference();

        text.skipCharacter();
        return true;
    }

    bool checkMarkup()
    {
        std::string_view comment;

        if (text.accept ("<!--"))
            return text.takeUntil ("-->", comment);

        if (text.startsWith ("<!") || text.startsWith ("<?"))
            return false;

        return text.accept ("</") ? checkClosingTag() : checkOpeningTag();
    }

    bool checkClosingTag()
    {
        std::string_view name;

        if (depth == 0 || ! text.takeUntil (">", name))
            return false;

        // JUCE's parser does not compare the names.
        name = name.substr (0, name.find_last_not_of (" \t\r\n") + 1);
        return name == openNames[static_cast<size_t> (--depth)];
    }

    bool checkOpeningTag()
    {
        if ((depth == 0 && ++numRoots > 1) || ++numNames > mostNames)
            return false;

        text.skipCharacter();
        const auto name = text.takeName();
        std::vector<std::string_view> attributes;

        if (name.empty())
            return false;

        for (;;)
        {
            text.skipBlanks();

            if (text.accept (">"))
                return open (name);

            if (text.accept ("/>"))
                return true;

            if (! checkAttribute (attributes))
                return false;
        }
    }

    bool open (std::string_view name)
    {
        if (depth == deepestLevel)
            return false;

        openNames[static_cast<size_t> (depth++)] = name;
        return true;
    }

    /** JUCE's parser leaves a tag without an error where a value has no quotes, and takes what follows for
        text. */
    bool checkAttribute (std::vector<std::string_view>& others)
    {
        constexpr size_t mostAttributes = 128;
        const auto name = text.takeName();

        if (name.empty() || others.size() == mostAttributes || ++numNames > mostNames
            || std::find (others.begin(), others.end(), name) != others.end())
            return false;

        // A tree would decode the value, and allocate whatever size it claims.
        if (name.starts_with ("base64:"))
            return false;

        others.push_back (name);
        text.skipBlanks();

        if (! text.accept ("="))
            return false;

        text.skipBlanks();

        for (const auto* quote : { "\"", "'" })
            if (text.accept (quote))
                return checkUntil (quote);

        return false;
    }

    bool checkUntil (std::string_view quote)
    {
        while (! text.accept (quote))
            if (text.isAtEnd() || text.startsWith ("<") || ! checkCharacter())
                return false;

        return true;
    }

    XmlCursor text;
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

bool isTrustedMarkup (std::string_view text)
{
    return MarkupCheck (text).passes();
}

} // namespace tessarin
