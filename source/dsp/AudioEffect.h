#pragma once

#include <juce_dsp/juce_dsp.h>

namespace luna
{

/** Base of everything that is prepared, processed and given numbered parameters.

    `prepare` and `setParameter` run under the lock that the owner also holds around `process`, so they never
    overlap with it. `changeCount` and `seenChangeCount` are read by a viewer on the message thread without a
    lock: a stale value costs one frame of drawing.
*/
class AudioEffect : public juce::dsp::ProcessorBase
{
public:
    void prepare (const juce::dsp::ProcessSpec& spec) final;

    void reset() override {}

    /** Sets a numbered parameter; 0 is the threshold in dB. The caller raises `changeCount`. */
    virtual void setParameter (float value, int index) = 0;

    virtual void prepareEffect (const juce::dsp::ProcessSpec& spec) = 0;

    /** Tells viewers that the settings may have changed, as if that had happened `times` times, up to 1000. */
    void raiseChangeCount (int times = 1) noexcept
    {
        changeCount += times;

        if (changeCount > 1000)
            changeCount -= 1001;
    }

    /** The last `changeCount` that a viewer has drawn; written by the viewer alone. */
    int seenChangeCount = 0;

    /** A token, not a total: counts 0 to 1000 and wraps. */
    int changeCount = -1;
};

} // namespace luna
