// The LV2 module's entry point, in front of that of JUCE's wrapper, which is compiled under another name.
//
// The wrapper writes to the port for its events whether or not there is memory behind it. Effect chains that know audio and
// control ports alone, such as PipeWire's, leave the others unconnected, and would end with the first block.

#include <lv2/core/lv2.h>

#include <array>
#include <cstdint>

extern "C" const LV2_Descriptor* orvo_juce_lv2_descriptor (uint32_t index);

namespace
{
/** Behind two inputs, two outputs and the port of incoming events. */
constexpr uint32_t eventOutput = 5;

/** An atom without room for anything: its size and its type. Nothing is ever written to it. */
std::array<uint32_t, 4> noEvents {};

const LV2_Descriptor& wrapper()
{
    return *orvo_juce_lv2_descriptor (0);
}

void connectPort (LV2_Handle instance, uint32_t port, void* memory)
{
    wrapper().connect_port (instance, port,
                            memory == nullptr && port == eventOutput ? noEvents.data() : memory);
}

LV2_Handle instantiate (const LV2_Descriptor* descriptor, double sampleRate, const char* bundle,
                        const LV2_Feature* const* features)
{
    auto* const instance = wrapper().instantiate (descriptor, sampleRate, bundle, features);

    if (instance != nullptr)
        connectPort (instance, eventOutput, nullptr);

    return instance;
}
} // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor (uint32_t index)
{
    static const auto descriptor = []
    {
        auto changed = wrapper();
        changed.instantiate = instantiate;
        changed.connect_port = connectPort;
        return changed;
    }();

    return index == 0 ? &descriptor : nullptr;
}
