#pragma once

#include <juce_dsp/juce_dsp.h>

#include <atomic>

namespace luna
{

/** Base of everything that is prepared, processed and given numbered parameters.

    `prepare` and `setParameter` run under the lock that the owner also holds around `process`, so they never
    overlap with it. A viewer on the message thread reads `changeCount` without a lock, and then the settings: a stale
    value costs one frame of drawing.
*/
class AudioEffect : public juce::dsp::ProcessorBase
{
public:
    void prepare (const juce::dsp::ProcessSpec& spec) final;

    void reset() override {}

    /** Sets a numbered parameter; 0 is the threshold in dB. The caller raises `changeCount`. */
    virtual void setParameter (float value, int index) = 0;

    virtual void prepareEffect (const juce::dsp::ProcessSpec& spec) = 0;

    /** Tells viewers that the settings may have changed, as if that had happened `times` times, up to 1000. Under the
        owner's lock. */
    void raiseChangeCount (int times = 1) noexcept
    {
        const auto raised = changeCount.load (std::memory_order_relaxed) + times;
        changeCount.store (raised > 1000 ? raised - 1001 : raised, std::memory_order_release);
    }

    /** The last `changeCount` that a viewer has drawn; written by the viewer alone. */
    int seenChangeCount = 0;

    /** A token, not a total: counts 0 to 1000 and wraps. Whoever reads it to acquire sees at least the settings that it
        was raised for. Processors other than x86 would otherwise show it first, and a viewer would take it for drawn with
        the settings before. */
    std::atomic<int> changeCount { -1 };
};

} // namespace luna
