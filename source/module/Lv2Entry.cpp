// The LV2 module's entry point, in front of that of JUCE's wrapper, which is compiled under another name.
//
// The wrapper writes to the port for its events whether or not there is memory behind it. Effect chains that know audio and
// control ports alone, such as PipeWire's, leave the others unconnected, and would end with the first block.
//
// It also makes and deletes the plug-in on the host's thread, while a thread of its own runs the messages that the plug-in
// posts. A message would find a plug-in that is half made, or half gone; so there is none meanwhile.

// With it comes the connection that the wrapper's thread opens.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

// Follows the headers that it uses.
#include <juce_audio_plugin_client/detail/juce_LinuxMessageThread.h>

#include <lv2/core/lv2.h>

#include <array>
#include <cstdint>
#include <memory>

extern "C" const LV2_Descriptor* orvo_juce_lv2_descriptor (uint32_t index);

namespace
{
/** Behind two inputs, two outputs and the port of incoming events. */
constexpr uint32_t eventOutput = 5;

/** An atom without room for anything: its size and its type. Nothing is ever written to it. */
std::array<uint32_t, 4> noEvents {};

/** JUCE's messages stand still while it lives. JUCE's own lock would do, but waits for ever where the host runs the
    messages, as it does with a window open, and runs none until this thread is done. */
class MessagePause
{
public:
    MessagePause()
    {
        constexpr auto longestWaitInMs = 2000;

        if (juce::MessageManager::getInstance()->isThisTheMessageThread())
            return;

        const auto hold = [events = events]
        {
            events->hasBegun.signal();
            events->isOver.wait();
        };

        if (juce::MessageManager::callAsync (hold))
            events->hasBegun.wait (longestWaitInMs);
    }

    ~MessagePause() { events->isOver.signal(); }

    MessagePause (const MessagePause&) = delete;
    MessagePause& operator= (const MessagePause&) = delete;

private:
    struct Events
    {
        juce::WaitableEvent hasBegun, isOver { true };
    };

    /** The wrapper's thread ends with its last user, which would wait for itself if that were held here. */
    const juce::ScopedJuceInitialiser_GUI juceLives;
    const juce::SharedResourcePointer<juce::detail::MessageThread> thread;

    /** A message that comes too late has them still. */
    const std::shared_ptr<Events> events = std::make_shared<Events>();
};

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
    const MessagePause pause;
    auto* const instance = wrapper().instantiate (descriptor, sampleRate, bundle, features);

    if (instance != nullptr)
        connectPort (instance, eventOutput, nullptr);

    return instance;
}

void cleanup (LV2_Handle instance)
{
    const MessagePause pause;
    wrapper().cleanup (instance);
}
} // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor (uint32_t index)
{
    static const auto descriptor = []
    {
        auto changed = wrapper();
        changed.instantiate = instantiate;
        changed.connect_port = connectPort;
        changed.cleanup = cleanup;
        return changed;
    }();

    return index == 0 ? &descriptor : nullptr;
}
