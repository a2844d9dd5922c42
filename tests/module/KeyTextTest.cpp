#include "module/KeyText.h"

#include <juce_core/juce_core.h>

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>

/** Against the X protocol's own list of symbols, which names the character of each. */
TEST (KeyText, IsTheCharacterThatTheProtocolNames)
{
    const std::set<unsigned long> known { 0, 1, 2, 3, 5, 6, 7, 0xc, 0xd, 0x13, 0x20 };
    const std::regex entry (R"(#define XK_\w+\s+0x(\w+)\s*/\* U\+([0-9A-F]+) .*)");
    std::ifstream header ("/usr/include/X11/keysymdef.h");
    auto count = 0;
    std::smatch parts;

    for (std::string line; std::getline (header, line);)
    {
        if (! std::regex_match (line, parts, entry))
            continue;

        const auto symbol = std::stoul (parts[1], nullptr, 16),
                   character = std::stoul (parts[2], nullptr, 16);

        // A program has no text for the ASCII keys to ask for: the X library always has it.
        if (symbol < 0x7f || symbol == 0x1000000 + character || ! known.contains (symbol >> 8))
            continue;

        ++count;
        EXPECT_EQ (tessarin::KeyText::textOf (symbol),
                   juce::String::charToString (static_cast<juce::juce_wchar> (character)).toStdString())
            << line;
    }

    EXPECT_GT (count, 500);
    EXPECT_EQ (tessarin::KeyText::textOf (0x1000416), "Ж");
    EXPECT_EQ (tessarin::KeyText::textOf (0x101f600), "😀");
    EXPECT_EQ (tessarin::KeyText::textOf (0xad2), "“");

    // Return, a dead accent and what is beyond all characters.
    for (const auto symbol : { 0xff0dul, 0xfe51ul, 0x1200000ul })
        EXPECT_EQ (tessarin::KeyText::textOf (symbol), "");
}
