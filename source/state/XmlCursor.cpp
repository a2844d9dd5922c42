#include "XmlCursor.h"

#include "state/StrictUtf8.h"

#include <algorithm>
#include <charconv>

namespace tessarin
{

namespace
{
constexpr std::string_view blanks = " \t\r\n";

/** What stands between "&#" and the semicolon. */
bool isCharacterNumber (std::string_view digits)
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
} // namespace

bool XmlCursor::startsWithBlank() const
{
    return ! rest.empty() && blanks.find (rest.front()) != std::string_view::npos;
}

void XmlCursor::skipBlanks()
{
    rest.remove_prefix (std::min (rest.find_first_not_of (blanks), rest.size()));
}

bool XmlCursor::accept (std::string_view expected)
{
    const auto isThere = startsWith (expected);
    rest.remove_prefix (isThere ? expected.size() : 0);
    return isThere;
}

bool XmlCursor::takeUntil (std::string_view marker, std::string_view& taken)
{
    const auto position = rest.find (marker);

    if (position == std::string_view::npos)
        return false;

    taken = rest.substr (0, position);
    rest.remove_prefix (position + marker.size());
    return true;
}

std::string_view XmlCursor::takeName()
{
    const auto name = rest.substr (0, rest.find_first_of (" \t\r\n/>=\"'<&"));
    rest.remove_prefix (name.size());
    return name;
}

bool XmlCursor::acceptReference()
{
    constexpr size_t longestReference = 12;
    const auto end = rest.substr (0, longestReference).find (';');

    if (! rest.starts_with ('&') || end == std::string_view::npos)
        return false;

    const auto name = rest.substr (1, end - 1);
    rest.remove_prefix (end + 1);

    if (name.starts_with ('#'))
        return isCharacterNumber (name.substr (1));

    return name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos";
}

} // namespace tessarin
