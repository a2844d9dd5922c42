#pragma once

#include <juce_core/juce_core.h>

#include <memory>
#include <optional>
#include <string_view>

namespace tessarin
{

/** The largest text that is looked at. A state or preset takes about 6 KB, and what a preset's texts take beyond
    that; written as references, as JUCE does beyond ASCII, they grow up to six times. */
inline constexpr size_t largestXmlText = 8 * 1024 * 1024;

/** Parses XML that may come from anywhere: a project, a file, a network drive's garbage.

    JUCE's parser is made for friendly input. It never returns from a processing instruction that is followed
    by text, reads past its buffer on invalid UTF-8 and on unfinished character references, and recurses once
    per level. So the text is checked first, for strict UTF-8 (a byte order mark is passed over), no zero
    byte, no processing instruction but the header, no document type or CDATA section, known or numeric
    references only, quoted attributes that stand once and are no binary data, closed comments, tags that
    close by name, exactly one root, at most 32 levels, and at most 128 attributes in a tag. Whatever fails gives
    null, as does text that is not well-formed.
*/
[[nodiscard]] std::unique_ptr<juce::XmlElement> parseCheckedXml (std::string_view text);

/** The check alone. */
[[nodiscard]] bool isCheckedXml (std::string_view text);

/** The parsed content of a file; null also if it is no regular file or cannot be read. */
[[nodiscard]] std::unique_ptr<juce::XmlElement> parseCheckedXml (const juce::File& file);

enum class XmlFile
{
    good,

    /** Also what is no regular file, or too large. */
    damaged,

    /** Missing, or out of reach just now: without permission, without a free descriptor, on a network that is down. It
        may be as good as ever. */
    unreadable
};

[[nodiscard]] XmlFile checkXmlFile (const juce::File& file);

/** A file's text, if it is a regular file of at most `largestXmlText` bytes of strict UTF-8 without a zero
    byte. */
[[nodiscard]] std::optional<juce::String> loadCheckedText (const juce::File& file);

} // namespace tessarin
