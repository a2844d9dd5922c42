#include "browser/TypedName.h"

#include <gtest/gtest.h>

TEST (TypedName, GoesToTheNextNameThatBeginsWithWhatWasTyped)
{
    const juce::StringArray names { "Alpha", "beta", "Bass", "Bass Loud", "Gamma", "bb" };

    // What is typed from a row, with a pause before each blank; and the row that it leads to.
    struct Typed
    {
        const char* keys;
        int from, to;
    };

    for (const auto& [keys, from, to] : std::initializer_list<Typed> { { "g", -1, 4 },
                                                                       { "a", 0, 0 },
                                                                       { "b", 0, 1 },
                                                                       { "bb", 0, 5 },
                                                                       { "ba", 0, 2 },
                                                                       { "B A", 0, 0 },
                                                                       { "b b", 0, 2 },
                                                                       { "bas", 3, 2 },
                                                                       { "b b b b", 0, 5 },
                                                                       { "b b b b b", 0, 1 },
                                                                       { "x", 2, -1 },
                                                                       { "gx", 0, -1 },
                                                                       { "aaa", 4, 0 },
                                                                       { "ggg", 0, 4 },
                                                                       { "bbb", 0, 1 } })
    {
        tessarin::TypedName typed;
        juce::uint32 now = 5000;
        typed.getMillisecondCounter = [&now] { return now += 900; };
        auto row = from, reached = from;

        for (const auto key : std::string (keys))
        {
            if (key == ' ')
            {
                now += 200;
                continue;
            }

            // Where nothing is found, the row stays.
            reached = typed.type (static_cast<juce::juce_wchar> (key), names, row);
            row = reached >= 0 ? reached : row;
        }

        EXPECT_EQ (reached, to) << keys << " from " << from;
    }
}
