#include "core/PluginUnderTest.h"
#include "support/Messages.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace
{
using juce::MemoryBlock;
using juce::String;

constexpr juce::uint32 magicNumber = 0x21324356;

/** The block that hosts store, put together by hand. */
MemoryBlock makeBlock (const std::string& text, juce::uint32 magic, juce::uint32 length)
{
    juce::MemoryOutputStream stream;

    for (const auto number : { magic, length })
        for (auto shift = 0; shift < 32; shift += 8)
            stream.writeByte (static_cast<char> ((number >> shift) & 0xff));

    stream.write (text.data(), text.size());
    stream.writeByte (0);
    return stream.getMemoryBlock();
}

MemoryBlock makeBlock (const std::string& text)
{
    return makeBlock (text, magicNumber, static_cast<juce::uint32> (text.size()));
}

/** A factory folder and one user preset, so that there are programs 0 and 1. */
struct State : testing::Test
{
    TemporaryConfig config;
    const bool hasFactory = config.preset ("Factory").createDirectory().wasOk();
    const juce::File loud = config.addPreset ("User/Loud.tpre", stateText (entry ("gain_single", "9")));
    PluginUnderTest plugin;
};

TEST_F (State, IsAFrameAroundOneLineOfXmlThatAnotherInstanceRestores)
{
    plugin.processor.presetManager.loadPreset (1);
    plugin.moveEverything();
    const auto block = plugin.capture();
    const auto* bytes = static_cast<const juce::uint8*> (block.getData());
    const std::string text (static_cast<const char*> (block.getData()) + 8, block.getSize() - 9);
    const auto length = block.getSize() - 9;

    EXPECT_EQ (std::string (static_cast<const char*> (block.getData()), 4), "VC2!");

    for (size_t i = 0; i < 4; ++i)
        EXPECT_EQ (bytes[4 + i], (length >> (8 * i)) & 0xff);

    EXPECT_EQ (bytes[block.getSize() - 1], 0);
    EXPECT_EQ (text.find_first_of (std::string ("\r\n\0", 3)), std::string::npos);

    // The file has no version of its own, so that the capture appends it after the path.
    const auto begin = "<?xml version=\"1.0\" encoding=\"UTF-8\"?> <orvo preset_path=\""
                       + loud.getFullPathName().toStdString() + "\" version=\"1.0.1\">";
    EXPECT_EQ (text.substr (0, begin.size()), begin);

    const auto xml = juce::parseXML (String (text));
    ASSERT_NE (xml, nullptr);
    EXPECT_EQ (xml->getNumChildElements(), 71) << "each once, and the view modes";

    PluginUnderTest other;
    other.restore (block);

    for (const auto& [id, value] : other.values())
    {
        const auto held = static_cast<float> (plugin.get (id));
        const auto* child = xml->getChildByAttribute ("id", id);
        EXPECT_FLOAT_EQ (static_cast<float> (value), held) << id;
        ASSERT_NE (child, nullptr) << id;
        EXPECT_FLOAT_EQ (static_cast<float> (child->getDoubleAttribute ("value")), held) << id;
    }

    EXPECT_EQ (other.processor.getCurrentProgram(), 1);
    EXPECT_EQ (other.capture().getSize(), block.getSize()) << "as much when saved again";
}

const auto gain7 = entry ("gain_single", "7").toStdString();
const auto good = stateText (entry ("gain_single", "7")).toStdString();
const auto goodSize = static_cast<juce::uint32> (good.size());

TEST_F (State, OfDamagedOrForeignOriginChangesNothing)
{
    std::vector<std::pair<std::string, MemoryBlock>> blocks {
        { "nothing", {} },
        { "eight bytes", { makeBlock (good).getData(), 8 } },
        { "cut at its end", { makeBlock (good).getData(), goodSize - 10 } },
        { "wrong magic number", makeBlock (good, magicNumber + 1, goodSize) },
        { "no length", makeBlock (good, magicNumber, 0) },
        { "negative length", makeBlock (good, magicNumber, 0x80000000u | goodSize) },
        { "cut by its length", makeBlock (good, magicNumber, goodSize - 1) },
    };

    // One of each kind; tests/state has the rest.
    for (const auto& text : { std::string(), "<other>" + gain7 + "</other>", "<pivot>" + gain7 + "</pivot>",
                              "<pivotstate>" + gain7 + "</pivotstate>", good + "<orvo/>", "<orvo>" + gain7,
                              "<orvo a=\"1\" a=\"2\">" + gain7 + "</orvo>",
                              "<orvo><?a?>x" + gain7 + "</orvo>", "<orvo>\x80" + gain7 + "</orvo>" })
        blocks.emplace_back (text, makeBlock (text));

    plugin.moveEverything();
    const auto values = plugin.values();
    juce::uint32 now = 0;
    plugin.processor.getMillisecondCounter = [&] { return now += 5000; };

    for (const auto& [name, block] : blocks)
    {
        SCOPED_TRACE (name);
        plugin.processor.presetManager.loadPreset (1);
        plugin.set (values);
        plugin.processor.lastRestoredState.reset();
        const auto tree = plugin.processor.parameters.copyState();

        plugin.restore (block);
        EXPECT_TRUE (plugin.processor.parameters.copyState().isEquivalentTo (tree));
        EXPECT_EQ (plugin.values(), values);
        EXPECT_EQ (plugin.processor.getCurrentProgram(), 1);
        EXPECT_TRUE (plugin.processor.lastRestoredState.isEmpty());
        EXPECT_EQ (plugin.processor.lastStateRestoreTime, now);
    }
}

TEST_F (State, IsReadInEveryFormThatHostsKeepItIn)
{
    std::vector<MemoryBlock> blocks {
        makeBlock (good, magicNumber, goodSize + 1000),
        makeBlock (good, magicNumber, 0x7fffffff),
        { makeBlock (good).getData(), goodSize + 8 },
    };

    for (const std::string& text : std::initializer_list<std::string> {
             good, "<Orvo>" + gain7 + "</Orvo>", "<ORVO version='9.9' >" + gain7 + "</ORVO >",
             "\xef\xbb\xbf" + good, " \r\n<!-- a --> <orvo>\r\n" + gain7 + "\t</orvo> <!---->" })
        blocks.push_back (makeBlock (text));

    for (const auto& block : blocks)
    {
        SCOPED_TRACE (block.toString().substring (8, 80).toStdString());
        plugin.set ("gain_single", -3.0);
        plugin.restore (block);
        EXPECT_EQ (plugin.get ("gain_single"), 7.0);
        EXPECT_EQ (plugin.processor.lastRestoredState, block);
    }
}

TEST_F (State, KeepsOrResetsWhatHasNoUsableEntry)
{
    struct Case
    {
        String children;

        /** After a restore of the host, with -3 before, and after a load of a preset. */
        double restored, loaded;
    };

    const auto gain = [] (const char* value) { return entry ("gain_single", value); };

    std::vector<Case> cases {
        { gain ("-7"), -7, -7 },
        { gain (" +7 "), 7, 7 },
        { gain ("0.7e1"), 7, 7 },
        { gain ("1e-42"), 0, 0 },
        { gain ("1e9"), 18, 18 },
        { gain ("-1e9"), -18, -18 },
        { gain ("7") + gain ("9"), 9, 9 },
        { gain ("7") + gain ("nan"), 7, 7 },
        { entry ("side", "4") + entry ("", "4") + gain ("7") + entry ("GAIN_SINGLE", "9"), 7, 7 },
    };

    for (const auto* value : { "nan", "inf", "-inf", "1e400", "loud", "7dB", "", "base64:1.7" })
        cases.push_back ({ gain (value), -3, 0 });

    for (const auto* children :
         { "", "<PARAM id=\"gain_single\"/>", "<PARAM value=\"7\"/>",
           "<OTHER id=\"gain_single\" value=\"7\"/>", "<a><PARAM id=\"gain_single\" value=\"7\"/></a>" })
        cases.push_back ({ children, -3, 0 });

    for (const auto& [children, restored, loaded] : cases)
    {
        SCOPED_TRACE (children.toStdString());
        plugin.set ("gain_single", -3.0);
        plugin.set ("gain_post", 6.0);
        plugin.restore (makeBlock (stateText (children).toStdString()));
        EXPECT_FLOAT_EQ (static_cast<float> (plugin.get ("gain_single")), static_cast<float> (restored));
        EXPECT_EQ (plugin.get ("gain_post"), 6.0);

        config.addPreset ("User/Loud.tpre", stateText (children));
        EXPECT_TRUE (plugin.processor.presetManager.loadPreset (1));
        EXPECT_FLOAT_EQ (static_cast<float> (plugin.get ("gain_single")), static_cast<float> (loaded));
        EXPECT_EQ (plugin.get ("gain_post"), 0.0);
    }
}

TEST_F (State, ShowsThePresetThatItCameFrom)
{
    const auto& state = plugin.processor.parameters.state;
    const auto withPath = [] (const String& path)
    { return makeBlock (stateText ({}, "preset_path=\"" + path + "\"").toStdString()); };

    for (const auto& [block, program] :
         { std::pair { withPath (loud.getFullPathName()), 1 }, std::pair { withPath ("/no/such.tpre"), 0 },
           std::pair { withPath (loud.getFullPathName()), 1 }, std::pair { withPath (""), 0 },
           std::pair { withPath (loud.getFullPathName()), 1 }, std::pair { makeBlock ("<orvo/>"), 0 } })
    {
        plugin.restore (block);
        EXPECT_EQ (plugin.processor.getCurrentProgram(), program);
        EXPECT_FALSE (state.hasProperty ("preset_path"));

        plugin.capture();
        EXPECT_EQ (state["preset_path"].toString(), program == 1 ? loud.getFullPathName() : String());
        EXPECT_EQ (state["version"].toString(), "1.0.1");
    }

    plugin.restore (withPath (loud.getFullPathName()));
    config.preset ("").deleteRecursively();
    plugin.processor.presetManager.loadPresets();
    plugin.restore (withPath ("/no/such.tpre"));
    EXPECT_EQ (plugin.processor.presetManager.getCurrentPreset().name, "Loud")
        << "with an empty list it stays";
}

TEST_F (State, AlwaysHasRoomForTheGraphsViewModes)
{
    const auto& state = plugin.processor.parameters.state;
    const auto viewModes = [&]
    {
        String modes;

        for (const auto child : state)
            modes << (child.hasType ("graph_modes") ? "[" + child["single"].toString() + "]" : String());

        return modes;
    };

    EXPECT_EQ (viewModes(), "[]");

    // A preset, the default patch and a block, none of which has any.
    for (const auto preset : { 1, 0, -1 })
    {
        plugin.restore (makeBlock ("<orvo><graph_modes single=\"1\"/></orvo>"));
        EXPECT_EQ (viewModes(), "[1]");

        if (! plugin.processor.presetManager.loadPreset (preset))
            plugin.restore (makeBlock ("<orvo/>"));

        EXPECT_EQ (viewModes(), "[]") << preset;
    }
}

TEST_F (State, HoldsOffTheHostsProgramForASecond)
{
    juce::uint32 now = 0;
    plugin.processor.getMillisecondCounter = [&] { return now; };

    // Also what cannot be read; and the counter starts anew after 49 days.
    const auto readable = makeBlock ("<orvo/>");

    for (const auto& [start, block] :
         { std::pair { 5000u, readable }, { 50000u, MemoryBlock() }, { 0xffffff00u, readable } })
    {
        plugin.processor.presetManager.loadPreset (0);
        now = start;
        plugin.restore (block);

        now = start + 999;
        plugin.processor.setCurrentProgram (1);
        EXPECT_EQ (plugin.processor.getCurrentProgram(), 0);

        now = start + 1000;
        plugin.processor.setCurrentProgram (1);
        EXPECT_EQ (plugin.processor.getCurrentProgram(), 1);
        EXPECT_EQ (plugin.get ("gain_single"), 9.0);
    }
}

TEST_F (State, OfACaptureOnAnotherThreadIsMarkedInTheLiveTreeLater)
{
    const auto& state = plugin.processor.parameters.state;
    const auto captureElsewhere = [&] { std::thread ([&] { plugin.capture(); }).join(); };

    plugin.processor.presetManager.loadPreset (1);
    captureElsewhere();
    EXPECT_FALSE (state.hasProperty ("preset_path")) << "the tree is the message thread's";
    dispatchMessages();
    EXPECT_EQ (state["preset_path"].toString(), loud.getFullPathName());
    EXPECT_EQ (state["version"].toString(), "1.0.1");

    captureElsewhere();
    plugin.restore (makeBlock (good));
    dispatchMessages();
    EXPECT_FALSE (state.hasProperty ("preset_path")) << "a restore takes it away for good";
}

TEST_F (State, ObeysTheLicence)
{
    const auto block = makeBlock (good);
    const auto other = makeBlock (stateText (entry ("gain_single", "8")).toStdString());

    plugin.setLicence ([] (auto& status) { status.stateFrozen = true; });
    MemoryBlock captured ("old", 3);
    plugin.processor.getStateInformation (captured);
    EXPECT_TRUE (captured.isEmpty()) << "frozen before any restore";

    plugin.restore (block);
    EXPECT_EQ (plugin.get ("gain_single"), 7.0) << "frozen, but not refused";
    plugin.set ("gain_single", 1.0);
    EXPECT_EQ (plugin.capture(), block);

    plugin.setLicence ([] (auto& status) { status.stateFrozen = status.restoreRefused = true; });
    plugin.restore (other);
    EXPECT_EQ (plugin.get ("gain_single"), 1.0);
    EXPECT_EQ (plugin.capture(), other) << "the last accepted block, although it was not applied";

    EXPECT_TRUE (plugin.processor.presetManager.loadPreset (1)) << "presets are not refused";
}
} // namespace
