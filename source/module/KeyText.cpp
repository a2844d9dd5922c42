#include "KeyText.h"

#include <juce_core/juce_core.h>

#include <iconv.h>

#include <algorithm>
#include <array>

namespace
{
struct Table
{
    unsigned long number;
    unsigned long firstCode;
    const char* characterSet;
};

/** The tables of symbols that are those of a character set from some code on, but for the exceptions. */
constexpr std::array tables { Table { 0x00, 0xa0, "ISO-8859-1" }, Table { 0x01, 0xa1, "ISO-8859-2" },
                              Table { 0x02, 0xa1, "ISO-8859-3" }, Table { 0x03, 0xa2, "ISO-8859-4" },
                              Table { 0x05, 0xac, "ISO-8859-6" }, Table { 0x06, 0xa1, "ECMA-CYRILLIC" },
                              Table { 0x07, 0xc1, "ISO-8859-7" }, Table { 0x0c, 0xdf, "ISO-8859-8" },
                              Table { 0x0d, 0xa1, "TIS-620" },    Table { 0x13, 0xbc, "ISO-8859-15" } };

struct Exception
{
    unsigned long symbol;
    juce::juce_wchar character;
};

constexpr std::array exceptions {
    // Ukrainian
    Exception { 0x6ad, 0x491 }, Exception { 0x6bd, 0x490 },
    // Greek with accents, and its sigmas
    Exception { 0x7a1, 0x386 }, Exception { 0x7a2, 0x388 }, Exception { 0x7a3, 0x389 },
    Exception { 0x7a4, 0x38a }, Exception { 0x7a5, 0x3aa }, Exception { 0x7a7, 0x38c },
    Exception { 0x7a8, 0x38e }, Exception { 0x7a9, 0x3ab }, Exception { 0x7ab, 0x38f },
    Exception { 0x7ae, 0x385 }, Exception { 0x7af, 0x2015 }, Exception { 0x7b1, 0x3ac },
    Exception { 0x7b2, 0x3ad }, Exception { 0x7b3, 0x3ae }, Exception { 0x7b4, 0x3af },
    Exception { 0x7b5, 0x3ca }, Exception { 0x7b6, 0x390 }, Exception { 0x7b7, 0x3cc },
    Exception { 0x7b8, 0x3cd }, Exception { 0x7b9, 0x3cb }, Exception { 0x7ba, 0x3b0 },
    Exception { 0x7bb, 0x3ce }, Exception { 0x7d2, 0x3a3 }, Exception { 0x7f2, 0x3c3 },
    Exception { 0x7f3, 0x3c2 },
    // dashes, dots, quotation marks and the trade mark
    Exception { 0xaa9, 0x2014 }, Exception { 0xaaa, 0x2013 }, Exception { 0xaae, 0x2026 },
    Exception { 0xac9, 0x2122 }, Exception { 0xad0, 0x2018 }, Exception { 0xad1, 0x2019 },
    Exception { 0xad2, 0x201c }, Exception { 0xad3, 0x201d }, Exception { 0xafd, 0x201a },
    Exception { 0xafe, 0x201e }
};

std::string toUtf8 (unsigned long character)
{
    return juce::String::charToString (static_cast<juce::juce_wchar> (character)).toStdString();
}

std::string convert (char code, const char* characterSet)
{
    const auto conversion = iconv_open ("UTF-8", characterSet);

    if (conversion == reinterpret_cast<iconv_t> (-1))
        return {};

    std::array<char, 8> text {};
    auto *from = &code, *to = text.data();
    size_t left = 1, room = text.size();
    const auto isKnown = iconv (conversion, &from, &left, &to, &room) == 0;
    iconv_close (conversion);
    return isKnown ? std::string (text.data(), to) : std::string();
}
} // namespace

std::string tessarin::KeyText::textOf (unsigned long symbol)
{
    constexpr auto firstCharacter = 0x01000100ul, lastCharacter = 0x0110fffful;
    constexpr auto characterBits = 0x00fffffful;
    constexpr auto currencies = 0x20ul;

    if (symbol >= firstCharacter && symbol <= lastCharacter)
        return toUtf8 (symbol & characterBits);

    const auto number = symbol >> 8, code = symbol & 0xff;

    if (number == currencies)
        return toUtf8 (symbol);

    const auto* exception = std::find_if (exceptions.begin(), exceptions.end(),
                                          [symbol] (const auto& e) { return e.symbol == symbol; });

    if (exception != exceptions.end())
        return juce::String::charToString (exception->character).toStdString();

    for (const auto& table : tables)
        if (table.number == number && code >= table.firstCode)
            return convert (static_cast<char> (code), table.characterSet);

    return {};
}
