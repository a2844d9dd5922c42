#include "CheckedXml.h"

#include "state/CheckedText.h"
#include "state/XmlMarkup.h"

namespace tessarin
{

bool isCheckedXml (std::string_view text)
{
    text = skipByteOrderMark (text);
    return isCheckedText (text) && isTrustedMarkup (text);
}

std::unique_ptr<juce::XmlElement> parseCheckedXml (std::string_view text)
{
    return isCheckedXml (text) ? juce::parseXML (toString (skipByteOrderMark (text))) : nullptr;
}

std::unique_ptr<juce::XmlElement> parseCheckedXml (const juce::File& file)
{
    const auto content = readFile (file);
    return content.kind == FileContent::Kind::bytes ? parseCheckedXml (std::string_view (content.bytes))
                                                    : nullptr;
}

XmlFile checkXmlFile (const juce::File& file)
{
    const auto content = readFile (file);

    if (content.kind == FileContent::Kind::unreadable)
        return XmlFile::unreadable;

    return content.kind == FileContent::Kind::bytes && isCheckedXml (content.bytes) ? XmlFile::good
                                                                                    : XmlFile::damaged;
}

} // namespace tessarin
