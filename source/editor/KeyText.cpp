#include "KeyText.h"

// The window system's headers define macros with everyday names, which go no further than this file.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <iconv.h>

#include <array>
#include <cstring>

namespace tessarin
{

namespace
{
struct Table
{
    unsigned long number;
    unsigned long firstCode;
    const char* characterSet;
};

/** The tables of symbols that are those of a character set from some code on. */
constexpr std::array tables { Table { 0x00, 0xa0, "ISO-8859-1" }, Table { 0x01, 0xa1, "ISO-8859-2" },
                              Table { 0x02, 0xa1, "ISO-8859-3" }, Table { 0x03, 0xa2, "ISO-8859-4" },
                              Table { 0x05, 0xac, "ISO-8859-6" }, Table { 0x06, 0xa3, "KOI8-U" },
                              Table { 0x07, 0xc1, "ISO-8859-7" }, Table { 0x0c, 0xe0, "ISO-8859-8" },
                              Table { 0x0d, 0xa1, "TIS-620" },    Table { 0x13, 0xbc, "ISO-8859-15" } };

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

juce::X11Symbols::XLookupString original = nullptr;

/** In the place of the X library's function of this name; JUCE declares the buffer as constant and reads from it. */
int lookUp (XKeyEvent* event, const char* buffer, int size, KeySym* symbol, XComposeStatus* status)
{
    const auto length = original (event, buffer, size, symbol, status);

    // The same in all locales, and with Control.
    if (length == 1 && static_cast<unsigned char> (buffer[0]) < 0x80)
        return length;

    const auto text = KeyText::textOf (*symbol);

    if (text.empty() || static_cast<int> (text.size()) >= size)
        return length;

    auto* writable = const_cast<char*> (buffer);
    std::memcpy (writable, text.c_str(), text.size() + 1);
    return static_cast<int> (text.size());
}
} // namespace

void KeyText::becomeJucesSource()
{
    const auto* system = juce::XWindowSystem::getInstanceWithoutCreating();

    if (system == nullptr || system->getDisplay() == nullptr)
        return;

    auto& asked = juce::X11Symbols::getInstance()->xLookupString;

    if (asked == lookUp)
        return;

    original = asked;
    asked = lookUp;
}

std::string KeyText::textOf (unsigned long symbol)
{
    constexpr auto firstCharacter = 0x01000100ul, lastCharacter = 0x0110fffful;
    constexpr auto characterBits = 0x00fffffful;
    constexpr auto currencies = 0x20ul;

    if (symbol >= firstCharacter && symbol <= lastCharacter)
        return juce::String::charToString (static_cast<juce::juce_wchar> (symbol & characterBits))
            .toStdString();

    const auto number = symbol >> 8, code = symbol & 0xff;

    if (number == currencies)
        return juce::String::charToString (static_cast<juce::juce_wchar> (symbol)).toStdString();

    for (const auto& table : tables)
        if (table.number == number && code >= table.firstCode)
            return convert (static_cast<char> (code), table.characterSet);

    return {};
}

} // namespace tessarin
