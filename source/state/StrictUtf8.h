#pragma once

#include <juce_core/juce_core.h>

#include <string_view>

namespace tessarin
{

/** By the Unicode standard's table 3-7: shortest forms only, no surrogates. */
[[nodiscard]] bool isStrictUtf8 (std::string_view text);

[[nodiscard]] bool isUnicodeScalar (juce::uint32 codePoint);

/** A text that XML can hold, for a path, which is any bytes: each byte that is no UTF-8 becomes the replacement
    character and the byte's two hexadecimal digits, so that different names keep different texts. */
[[nodiscard]] juce::String makeValidText (const juce::String& path);

} // namespace tessarin
