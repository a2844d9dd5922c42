#pragma once

#include <juce_core/juce_core.h>

#include <memory>
#include <string_view>

namespace tessarin
{

/** Parses XML that may come from anywhere: a project, a file, a network drive's garbage.

    JUCE's parser is made for friendly input. It never returns from a processing instruction that is followed
    by text, reads past its buffer on invalid UTF-8 and on unfinished character references, and recurses once
    per level. So the text is checked first: its bytes (see CheckedText.h; a byte order mark is passed over), then its
    markup (XmlMarkup.h). Whatever fails gives null, as does text that is not well-formed.
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

    /** Missing, or out of reach just now; it may be as good as ever. */
    unreadable
};

[[nodiscard]] XmlFile checkXmlFile (const juce::File& file);

} // namespace tessarin
