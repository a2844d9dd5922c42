#include "CheckedText.h"

#include "state/StrictUtf8.h"

#include <filesystem>

namespace tessarin
{

bool isCheckedText (std::string_view text)
{
    return text.size() <= largestText && text.find ('\0') == std::string_view::npos && isStrictUtf8 (text);
}

std::string_view skipByteOrderMark (std::string_view text)
{
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

    if (text.starts_with (byteOrderMark))
        text.remove_prefix (byteOrderMark.size());

    return text;
}

juce::String toString (std::string_view text)
{
    return juce::String::fromUTF8 (text.data(), static_cast<int> (text.size()));
}

FileContent readFile (const juce::File& file)
{
    using Kind = FileContent::Kind;
    std::error_code failure;
    const auto status = std::filesystem::status (file.getFullPathName().toStdString(), failure);

    if (! std::filesystem::is_regular_file (status))
        return { std::filesystem::exists (status) ? Kind::unfit : Kind::unreadable, {} };

    juce::FileInputStream stream (file);

    if (stream.failedToOpen())
        return {};

    const auto length = stream.getTotalLength();

    if (length > static_cast<juce::int64> (largestText))
        return { Kind::unfit, {} };

    std::string bytes (static_cast<size_t> (length), '\0');
    const auto numBytes = stream.read (bytes.data(), static_cast<int> (bytes.size()));

    // A network drive may fail only now.
    if (stream.getStatus().failed() || numBytes < 0)
        return {};

    bytes.resize (static_cast<size_t> (numBytes));
    return { Kind::bytes, std::move (bytes) };
}

std::optional<juce::String> loadCheckedText (const juce::File& file)
{
    const auto content = readFile (file);

    if (content.kind != FileContent::Kind::bytes || ! isCheckedText (content.bytes))
        return {};

    return toString (skipByteOrderMark (content.bytes));
}

} // namespace tessarin
