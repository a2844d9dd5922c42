#pragma once

#include <juce_core/juce_core.h>

#include <memory>

namespace tessarin
{

/** Reads the XML out of a host's state block: the magic number 0x21324356, the text's length, and the text,
    all integers little-endian, as `copyXmlToBinary` of juce::AudioProcessor writes it.

    Null for a block of 8 bytes or fewer, another magic number, a length that is 0 or negative, and text that
    is not well-formed. A length beyond the block's end is cut there.
*/
[[nodiscard]] std::unique_ptr<juce::XmlElement> parseStateBlock (const void* data, int sizeInBytes);

/** Whether `parseStateBlock` would get as far as JUCE's parser. */
[[nodiscard]] bool isReadableStateBlock (const void* data, int sizeInBytes);

} // namespace tessarin
