// Any bytes through a whole processor: as a host's block if they begin like one, else as a preset file that
// is replaced on disk and loaded.

#include "core/OrvoAudioProcessor.h"
#include "fuzz/Require.h"
#include "support/TemporaryConfig.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace
{
using Values = std::vector<float>;

struct Harness
{
    Harness()
    {
        processor.prepareToPlay (48000.0, blockSize);
        std::atexit ([] { get().config.base.deleteRecursively(); });
    }

    /** Never freed: JUCE cannot be ended while the fuzzer runs its own end. */
    static Harness& get()
    {
        static auto* harness = new Harness;
        return *harness;
    }

    Values values() const
    {
        Values all;

        for (auto* parameter : processor.getParameters())
        {
            const auto& ranged = static_cast<const juce::RangedAudioParameter&> (*parameter);
            all.push_back (processor.parameters.getRawParameterValue (ranged.paramID)->load());
        }

        return all;
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
        processor.setStateInformation (bytes.data(), static_cast<int> (bytes.size()));
        return ! processor.lastRestoredState.isEmpty();
    }

    bool applyPreset (std::string_view bytes)
    {
        presetFile.replaceWithData (bytes.data(), bytes.size());
        return processor.presetManager.loadPreset (1);
    }

    void checkAcceptedState()
    {
        for (auto* parameter : processor.getParameters())
        {
            const auto& ranged = static_cast<const juce::RangedAudioParameter&> (*parameter);
            const auto& range = ranged.getNormalisableRange();
            const auto value = processor.parameters.getRawParameterValue (ranged.paramID)->load();
            require (value >= range.start && value <= range.end, "every value stays in its range");
        }

        const auto before = values();
        const auto program = processor.getCurrentProgram();
        juce::MemoryBlock block;
        processor.getStateInformation (block);
        reset();
        processor.setStateInformation (block.getData(), static_cast<int> (block.getSize()));
        const auto after = values();

        for (size_t i = 0; i < before.size(); ++i)
            require (juce::approximatelyEqual (before[i], after[i]), "a captured state restores every value");

        require (processor.getCurrentProgram() == program, "and the preset");

        juce::MidiBuffer midi;
        juce::AudioBuffer<float> audio (2, blockSize);
        audio.clear();
        audio.setSample (0, 0, 1.0f);
        processor.processBlock (audio, midi);
        require (audio.getMagnitude (0, blockSize) <= 1.0f, "the chain runs with the restored values");
    }

    static constexpr auto blockSize = 16;
    juce::ScopedJuceInitialiser_GUI juceInitialiser;
    TemporaryConfig config;
    const bool hasFactory = config.preset ("Factory").createDirectory().wasOk();
    const juce::File presetFile =
        config.addPreset (juce::CharPointer_UTF8 ("User/Fuzzed\xed\xa0\x80.tpre"), stateText());
    OrvoAudioProcessor processor;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    auto& harness = Harness::get();
    auto& parameters = harness.processor.parameters;
    harness.reset();

    const std::string_view bytes (reinterpret_cast<const char*> (data), size);
    const auto values = harness.values();
    const auto tree = parameters.copyState();
    const auto isAccepted =
        bytes.substr (0, 4) == "VC2!" ? harness.applyBlock (bytes) : harness.applyPreset (bytes);

    if (isAccepted)
    {
        harness.checkAcceptedState();
        return 0;
    }

    require (harness.values() == values, "a refused state changes no parameter");
    require (parameters.copyState().isEquivalentTo (tree), "a refused state leaves the tree alone");
    return 0;
}
