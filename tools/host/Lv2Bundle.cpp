#include "Lv2Bundle.h"

#include "Failure.h"
#include "scratch/TemporaryFolder.h"

#include <stdlib.h>

namespace lv2Bundle
{

namespace
{
constexpr auto stateKey = "<" ORVO_LV2_URI ":StateString>";
} // namespace

bool isBundle (const juce::File& module)
{
    return module.getChildFile ("manifest.ttl").existsAsFile();
}

std::unique_ptr<juce::AudioPluginFormat> makeFormat (const juce::File& bundle)
{
    // Of two plug-ins of one name, the one in the user's home is taken, so there is another home meanwhile; until the program's
    // end, since presets are read when they are loaded.
    static const TemporaryFolder home;
    const auto plugins = home.path / ".lv2";
    std::filesystem::remove_all (plugins);
    std::filesystem::create_directory (plugins);
    std::filesystem::create_directory_symlink (bundle.getFullPathName().toStdString(), plugins / "Orvo.lv2");

    const auto usersHome = juce::SystemStats::getEnvironmentVariable ("HOME", {});
    setenv ("HOME", home.path.c_str(), 1);
    auto format = std::make_unique<juce::LV2PluginFormat>();
    setenv ("HOME", usersHome.toRawUTF8(), 1);
    return format;
}

juce::String parameterIdFrom (const juce::String& hostedId)
{
    return hostedId.fromFirstOccurrenceOf (ORVO_LV2_URI ":", false, false);
}

juce::MemoryBlock blockFrom (const juce::MemoryBlock& preset)
{
    const auto text = preset.toString().fromFirstOccurrenceOf (stateKey, false, false);
    juce::MemoryBlock block;

    if (! block.fromBase64Encoding (
            text.fromFirstOccurrenceOf ("\"", false, false).upToFirstOccurrenceOf ("\"", false, false)))
        block.reset();

    return block;
}

juce::MemoryBlock presetFrom (const juce::MemoryBlock& block)
{
    const auto text = juce::String ("<" ORVO_LV2_URI "/state>\n"
                                    "\ta <http://lv2plug.in/ns/ext/presets#Preset> ;\n"
                                    "\t<http://lv2plug.in/ns/lv2core#appliesTo> <" ORVO_LV2_URI "> ;\n"
                                    "\t<http://lv2plug.in/ns/ext/state#state> [ ")
                      + stateKey + " \"" + block.toBase64Encoding() + "\" ] .\n";
    return { text.toRawUTF8(), text.getNumBytesAsUTF8() };
}

} // namespace lv2Bundle
