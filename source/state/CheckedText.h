#pragma once

#include <juce_core/juce_core.h>

#include <optional>
#include <string>
#include <string_view>

namespace tessarin
{

/** The largest text that is looked at, in bytes. A state or preset takes about 6 KB, and what a preset's texts take
    beyond that; written as references, as JUCE does beyond ASCII, they grow up to six times. */
inline constexpr size_t largestText = 8 * 1024 * 1024;

/** Whether it is strict UTF-8 without a zero byte, and not too large. */
[[nodiscard]] bool isCheckedText (std::string_view text);

/** The same text behind its byte order mark, if it has one. */
[[nodiscard]] std::string_view skipByteOrderMark (std::string_view text);

/** Of a text in UTF-8. */
[[nodiscard]] juce::String toString (std::string_view text);

/** The bytes of a file that may be anything. */
struct FileContent
{
    enum class Kind
    {
        bytes,

        /** No regular file (reading a pipe would never end), or too large. */
        unfit,

        /** Missing, or out of reach just now: without permission, without a free descriptor, on a network that is
            down. */
        unreadable
    };

    Kind kind = Kind::unreadable;
    std::string bytes;
};

[[nodiscard]] FileContent readFile (const juce::File& file);

/** A file's text, if it is a regular file and `isCheckedText`. */
[[nodiscard]] std::optional<juce::String> loadCheckedText (const juce::File& file);

} // namespace tessarin
