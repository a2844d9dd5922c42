#include "editor/KeyText.h"

#include <gtest/gtest.h>

#include <utility>

/** The left column is the X protocol's, the right one what stands on such keys. */
TEST (KeyText, IsTheCharacterOfTheKeyInAnyScript)
{
    for (const auto& [symbol, text] : { std::pair<unsigned long, const char*> { 0x0e9, "é" },
                                        { 0x1b3, "ł" },
                                        { 0x2bb, "ğ" },
                                        { 0x3b3, "ŗ" },
                                        { 0x5d4, "ش" },
                                        { 0x6a6, "і" },
                                        { 0x6d6, "ж" },
                                        { 0x7e1, "α" },
                                        { 0xcf9, "ש" },
                                        { 0xda1, "ก" },
                                        { 0x13bd, "œ" },
                                        { 0x20ac, "€" },
                                        { 0x1000416, "Ж" },
                                        { 0x101f600, "😀" },
                                        { 0xff0d, "" },
                                        { 0xfe51, "" },
                                        { 0x7a1, "" },
                                        { 0x041, "" },
                                        { 0x1200000, "" } })
        EXPECT_EQ (tessarin::KeyText::textOf (symbol), text) << std::hex << symbol;
}
