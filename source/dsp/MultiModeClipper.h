#pragma once

#include "dsp/curves/Boost.h"
#include "dsp/curves/Dough.h"
#include "dsp/curves/Foldback.h"
#include "dsp/curves/HardClipper.h"
#include "dsp/curves/InflatorClipper.h"
#include "dsp/curves/SinClipper.h"
#include "dsp/curves/SoftClipper.h"
#include "dsp/curves/TanhClipper.h"

#include <array>
#include <atomic>
#include <functional>
#include <limits>

/** Headings of a section's mode menu, in their order. */
struct ModeGroup
{
    /** What `ClipperMode::group` holds. */
    int id;
    const char* title;
};

inline constexpr ModeGroup clippersGroup { 0, "Clippers" };
inline constexpr ModeGroup enhancersGroup { 2, "Enhancers" };
inline constexpr std::array modeGroups { clippersGroup, enhancersGroup };

/** One entry of a section's mode menu. */
struct ClipperMode
{
    /** Also the value of the section's choice parameter. */
    int id = 0;

    /** 2 to the power `id`. */
    int flag = 0;

    luna::Saturator* saturator = nullptr;
    juce::String name;

    /** Caption of the shape control while the mode is selected. */
    juce::String shapeLabel;

    /** The id of its `ModeGroup`. */
    int group = 0;

    /** Pushes the section's settings into the saturator. */
    std::function<void()> apply;
};

/** One clipper section: the curves, the selected one, and threshold, shape and makeup gain.

    Everything that changes the section runs under the processor's lock, which is also held around `process`
    on the audio thread. Settings and mode act at once, between two blocks, without a ramp. An editor reads
    `current`, `modes` and `currentModeId` without the lock; the mode table never changes after construction.
*/
class MultiModeClipper final : public luna::AudioEffect
{
public:
    MultiModeClipper();

    /** Does nothing while disabled; else curve and makeup, in place. Does not allocate or lock. */
    void process (const juce::dsp::ProcessContextReplacing<float>& context) override;

    /** 0: threshold in dB; 1: shape, 0 to 1; 2: makeup gain in dB. */
    void setParameter (float value, int index) override;

    /** Threshold and makeup gain in dB, in this order. What is set already is not applied once more, but every
        `changeCount` moves as if it were. */
    void setLevels (float newThresholdDb, float newMakeupDb);

    void prepareEffect (const juce::dsp::ProcessSpec& spec) override;

    /** Selects a mode; an unknown id leaves the present one. Calls the mode change handler on this thread. */
    void setMode (int id);

    /** Sets what runs after every change of mode, or nothing. Any thread. It runs on whichever thread changed the
        mode, with the processor's lock and a small one of its own held: it may only post. */
    void setModeChangeHandler (std::function<void()> handler);

    luna::Saturator* current = nullptr;

    luna::HardClipper hardClipper;
    luna::SoftClipper softClipper;
    luna::InflatorClipper inflatorClipper;
    luna::Foldback foldback;
    luna::Dough dough;
    luna::Boost boost;
    luna::TanhClipper tanhClipper;
    luna::SinClipper sinClipper;

    juce::Array<ClipperMode> modes;
    int currentModeId = 0;

    /** Read by the window without a lock. */
    std::atomic<bool> enabled { true };

    float thresholdDb = 0.0f;
    float shape = 0.0f;

    /** Linear. */
    float makeupGain = 1.0f;

private:
    void addMode (luna::Saturator&, const char* name, const char* shapeLabel, const ModeGroup& group,
                  std::function<void()> apply);
    void applyCurrentMode();

    void pushParameter (luna::Saturator&, float value, int index);

    /** Of the last `apply`. */
    int numPushes = 0;

    /** What `makeupGain` was made of; no number before the first time. */
    float makeupDb = std::numeric_limits<float>::quiet_NaN();

    /** An editor comes and goes while the audio thread changes modes. */
    std::function<void()> onModeChange;
    juce::CriticalSection modeChangeLock;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (MultiModeClipper)
};
