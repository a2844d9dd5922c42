#include "StateBlock.h"

#include "state/CheckedXml.h"

namespace tessarin
{

namespace
{
/** Empty for a block without any. */
std::string_view findText (const void* data, int sizeInBytes)
{
    constexpr auto headerSize = 8;
    constexpr juce::uint32 magicNumber = 0x21324356;

    if (sizeInBytes <= headerSize || juce::ByteOrder::littleEndianInt (data) != magicNumber)
        return {};

    const auto* bytes = static_cast<const char*> (data);
    const auto length = static_cast<int> (juce::ByteOrder::littleEndianInt (bytes + 4));

    if (length <= 0)
        return {};

    std::string_view text (bytes + headerSize,
                           static_cast<size_t> (juce::jmin (sizeInBytes - headerSize, length)));

    // A length that reaches beyond the block takes in the zero byte at its end.
    while (! text.empty() && text.back() == '\0')
        text.remove_suffix (1);

    return text;
}
} // namespace

std::unique_ptr<juce::XmlElement> parseStateBlock (const void* data, int sizeInBytes)
{
    return parseCheckedXml (findText (data, sizeInBytes));
}

bool isReadableStateBlock (const void* data, int sizeInBytes)
{
    return isCheckedXml (findText (data, sizeInBytes));
}

} // namespace tessarin
