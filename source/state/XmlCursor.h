#pragma once

#include <string_view>

namespace tessarin
{

/** What is left of an XML text, and the small steps through it. Each consumes what it accepts. */
class XmlCursor
{
public:
    explicit XmlCursor (std::string_view text) : rest (text) {}

    [[nodiscard]] bool isAtEnd() const { return rest.empty(); }

    [[nodiscard]] bool startsWith (std::string_view prefix) const { return rest.starts_with (prefix); }

    /** Blanks, tabs and line ends. */
    [[nodiscard]] bool startsWithBlank() const;
    void skipBlanks();

    void skipCharacter() { rest.remove_prefix (1); }

    /** Whether the text went on like this. */
    [[nodiscard]] bool accept (std::string_view expected);

    /** Everything before the marker, which is consumed too. False if there is none. */
    [[nodiscard]] bool takeUntil (std::string_view marker, std::string_view& taken);

    /** Of a tag or attribute; empty if the text does not go on with one. */
    [[nodiscard]] std::string_view takeName();

    /** From the ampersand to the semicolon: one of XML's five, or the number of a character. */
    [[nodiscard]] bool acceptReference();

private:
    std::string_view rest;
};

} // namespace tessarin
