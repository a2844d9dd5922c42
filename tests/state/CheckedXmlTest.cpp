#include "state/CheckedXml.h"

#include "scratch/TemporaryFolder.h"
#include "state/CheckedText.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>
#include <vector>

namespace
{
using tessarin::XmlFile;

std::string times (int count, const char* text)
{
    return juce::String::repeatedString (juce::String::fromUTF8 (text), count).toStdString();
}

std::string within (const std::string& text)
{
    return "<orvo>" + text + "</orvo>";
}

std::string attributes (int count)
{
    std::string all;

    for (auto i = 0; i < count; ++i)
        all += " a" + std::to_string (i) + "=\"1\"";

    return "<orvo" + all + "/>";
}

TEST (CheckedXml, ReadsWhatIsWellFormedAndShallowAndNothingElse)
{
    const auto largest = 8 * 1024 * 1024 - static_cast<int> (within ({}).size());
    std::vector<std::string> good {
        "<?xml version=\"1.0\"?> <orvo a='1' b = \"2\" ></orvo >",
        "\xef\xbb\xbf<orvo/>",
        " \r\n<!-- a <?b?> --> <orvo>\r\n <!-->-->\t</orvo> <!---->",
        "<orvo a=\"&lt;&#x3e;\xc3\xa4\xf0\x9f\x8e\x9b\"><a\nb = '&#55;' "
        "id=\"a&#95;b\"/>&amp;&gt;&quot;&apos;</orvo>",
    };
    std::vector<std::string> bad { "<!DOCTYPE orvo [<!ENTITY a \"7\">]><orvo/>",
                                   within (std::string (1, '\0')) };

    // As much as there may be, and one more.
    for (const auto more : { 0, 1 })
        for (const auto& text :
             { times (32 + more, "<a>") + times (32 + more, "</a>"), attributes (128 + more),
               within (times (9999 + more, "<a/>")), within (times (250000 + more, "&lt;")),
               within (times (largest + more, " ")) })
            (more == 0 ? good : bad).push_back (text);

    for (const auto* text : { "", "orvo 7", " \r\n", "<?xml version=\"1.0\"?>", "<orvo/><orvo/>", "<orvo/>x",
                              "<?xml?><?xml?><orvo/>", "<orvo>", "<orvo a=b/>", "<orvo a=\"1\" a=\"2\"/>",
                              "<orvo base64:a=\"-1.x\"/>", "<orvo a=\"b>", "<orvo a=\"<\"/>", "<orvo a/>",
                              "<orvo a=\"b\"c=\"d\"/", "<orvo></other>", "</orvo>", "<orvo>\xe2\x82" })
        bad.emplace_back (text);

    for (const auto* text :
         { "<a><b></a></b>", "<a b=c/>", "<!-- ", "<?a?>x", "<![CDATA[x]]>", "\x80", "\xc0\xaf",
           "\xed\xa0\x80", "\xf4\x90\x80\x80", "&nbsp;", "&#x41", "&#0;", "&#xd800;" })
        bad.push_back (within (text));

    const TemporaryFolder folder;
    const juce::File file (folder.path.string() + "/file");

    for (const auto* texts : { &good, &bad })
    {
        for (const auto& text : *texts)
        {
            SCOPED_TRACE (text.substr (0, 60));
            const auto isGood = texts == &good;
            EXPECT_EQ (tessarin::isCheckedXml (text), isGood);

            std::ofstream (file.getFullPathName().toStdString()) << text;
            EXPECT_EQ (tessarin::parseCheckedXml (file) != nullptr, isGood);
            EXPECT_EQ (tessarin::checkXmlFile (file), isGood ? XmlFile::good : XmlFile::damaged);
        }
    }

    // Without a writer, a pipe never ends.
    const auto pipe = file.getSiblingFile ("pipe"), missing = file.getSiblingFile ("missing");
    ASSERT_EQ (mkfifo (pipe.getFullPathName().toRawUTF8(), 0600), 0);

    for (const auto& [other, expected] : { std::pair { pipe, XmlFile::damaged },
                                           { file.getParentDirectory(), XmlFile::damaged },
                                           { missing, XmlFile::unreadable } })
    {
        EXPECT_EQ (tessarin::parseCheckedXml (other), nullptr);
        EXPECT_EQ (tessarin::checkXmlFile (other), expected);
        EXPECT_FALSE (tessarin::loadCheckedText (other));
    }
}
} // namespace
