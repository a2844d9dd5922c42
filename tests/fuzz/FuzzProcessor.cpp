// Any bytes through a whole processor: as a host's block if they begin like one, else as a preset file that
// is replaced on disk and loaded.

#include "core/PluginUnderTest.h"
#include "fuzz/Require.h"
#include "support/TemporaryConfig.h"

#include <cstdint>
#include <string_view>

namespace
{
struct Harness
{
    Harness()
    {
        std::atexit ([] { get().config.base.deleteRecursively(); });
    }

    /** Never freed: JUCE cannot be ended while the fuzzer runs its own end. */
    static Harness& get()
    {
        static auto* harness = new Harness;
        return *harness;
    }

    /** The same start for every input, with no parameter at its default. */
    void reset()
    {
        for (auto* parameter : processor.getParameters())
            parameter->setValueNotifyingHost (parameter->getDefaultValue() > 0.5f ? 0.3f : 0.6f);

        processor.lastRestoredState.reset();
        processor.toastManager.toasts.clear();
    }

    bool applyBlock (std::string_view bytes)
    {
        plugin.restore ({ bytes.data(), bytes.size() });
        return ! processor.lastRestoredState.isEmpty();
    }

    bool applyPreset (std::string_view bytes)
    {
        presetFile.replaceWithData (bytes.data(), bytes.size());
        return processor.presetManager.loadPreset (1);
    }

    void checkAcceptedState()
    {
        for (const auto& row : expected::parameters())
        {
            const auto value = plugin.get (row.id);
            require (value >= row.min && value <= row.max, "every value stays in its range");
        }

        const auto before = plugin.values();
        const auto program = processor.getCurrentProgram();
        const auto block = plugin.capture();
        reset();
        plugin.restore (block);

        for (const auto& [id, value] : plugin.values())
            require (
                juce::approximatelyEqual (static_cast<float> (value), static_cast<float> (before.at (id))),
                "a captured state restores every value");

        require (processor.getCurrentProgram() == program, "and the preset");
        require (plugin.render (signals::impulse (2, blockSize)).getMagnitude (0, blockSize) <= 1.0f,
                 "the chain runs with the restored values");
    }

    static constexpr auto blockSize = 16;
    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    TemporaryConfig config;
    const bool hasFactory = config.preset ("Factory").createDirectory().wasOk();
    const juce::File presetFile =
        config.addPreset (juce::CharPointer_UTF8 ("User/Fuzzed\xed\xa0\x80.tpre"), stateText());
    PluginUnderTest plugin { 2, 48000.0, blockSize };
    OrvoAudioProcessor& processor = plugin.processor;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    auto& harness = Harness::get();
    auto& parameters = harness.processor.parameters;
    harness.reset();

    const std::string_view bytes (reinterpret_cast<const char*> (data), size);
    const auto values = harness.plugin.values();
    const auto tree = parameters.copyState();
    const auto isAccepted =
        bytes.substr (0, 4) == "VC2!" ? harness.applyBlock (bytes) : harness.applyPreset (bytes);

    if (isAccepted)
    {
        harness.checkAcceptedState();
        return 0;
    }

    require (harness.plugin.values() == values, "a refused state changes no parameter");
    require (parameters.copyState().isEquivalentTo (tree), "a refused state leaves the tree alone");
    return 0;
}
