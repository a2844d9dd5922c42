#pragma once

#include <string_view>

namespace tessarin
{

/** Whether JUCE's XML parser can be trusted with this text, which is strict UTF-8 without a zero byte and begins with
    no byte order mark: no processing instruction but the header, no document type or CDATA section, known or numeric
    references only, quoted attributes that stand once and are no binary data, closed comments, tags that close by
    name, exactly one root, at most 32 levels, 128 attributes in a tag, 10000 names and 250000 references. */
[[nodiscard]] bool isTrustedMarkup (std::string_view text);

} // namespace tessarin
