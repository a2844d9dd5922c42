#include "Lv2Bundle.h"

#include "Failure.h"
#include "scratch/TemporaryFolder.h"

#include <dlfcn.h>

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
    // A folder with this bundle alone: for each other thing in it, there would be a complaint. Until the program's end, since
    // presets are read when they are loaded.
    static const TemporaryFolder folder;
    std::error_code ignored;
    std::filesystem::create_directory_symlink (bundle.getFullPathName().toStdString(),
                                               folder.path / "Orvo.lv2", ignored);

    auto format = std::make_unique<juce::LV2PluginFormat>();
    format->searchPathsForPlugins (juce::FileSearchPath (folder.path.string()), false, false);
    return format;
}

void requireLoaded (const juce::File& bundle)
{
    const auto library = bundle.getChildFile ("Orvo.so").getFullPathName();
    auto* const handle = dlopen (library.toRawUTF8(), RTLD_LAZY | RTLD_NOLOAD);

    if (handle == nullptr)
        throw Failure (library + " is not what was loaded: another LV2 plug-in of this name is installed");

    dlclose (handle);
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
