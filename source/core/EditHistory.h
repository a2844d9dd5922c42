#pragma once

#include "presets/PresetManager.h"

#include <juce_audio_processors/juce_audio_processors.h>
#include <juce_data_structures/juce_data_structures.h>

#include <array>
#include <atomic>
#include <functional>
#include <vector>

namespace tessarin
{

/** Takes back what the user did in the window and brings it again, and keeps two states, A and B, to compare, each
    with a history of its own.

    A step is a gesture on a parameter, a preset that the user loads, or the copy of A to B. Gestures that overlap are
    one step, and so is a run of them on one parameter, as the wheel makes it. What a host automates makes none. A
    state or a program that it brings ends the history of the state that is heard, as its steps have led elsewhere.
    Message thread, but for `forget`.
*/
class EditHistory final : private juce::AudioProcessorListener, private PresetManager::Listener
{
public:
    enum class Side : size_t
    {
        a,
        b
    };

    /** The plug-in's state as a whole, with the preset's path. */
    struct StateAccess
    {
        std::function<juce::ValueTree()> capture;
        std::function<void (const juce::ValueTree&)> restore;
    };

    /** The processor and the manager outlive this. */
    EditHistory (juce::AudioProcessor&, PresetManager&, StateAccess);
    ~EditHistory() override;

    /** False where there is nothing to take back or bring again, and in the middle of a gesture. */
    bool undo();
    bool redo();

    /** What the next step is about, a parameter's name or "Preset"; empty without a step. */
    [[nodiscard]] juce::String getUndoName() const;
    [[nodiscard]] juce::String getRedoName() const;

    /** Keeps the present state as the side that is heard, and makes the other one the present. The first time, B is
        what A was. */
    void listenTo (Side);

    [[nodiscard]] Side getHeardSide() const noexcept { return heard; }

    void copyAToB();

    /** The host has brought another state. Any thread. */
    void forget() noexcept { isOutdated = true; }

    /** Tells a run from single steps; replaced by tests. */
    std::function<juce::uint32()> getMillisecondCounter = juce::Time::getMillisecondCounter;

private:
    class Gesture;
    class StateChange;

    struct ParameterChange
    {
        juce::AudioProcessorParameter* parameter;
        float before, after;
        bool isOpen;
    };

    struct Kept
    {
        /** Invalid until the other side was heard. */
        juce::ValueTree state;
        juce::UndoManager steps;
    };

    void audioProcessorParameterChanged (juce::AudioProcessor*, int, float) override {}

    void audioProcessorChanged (juce::AudioProcessor*, const ChangeDetails&) override {}

    void audioProcessorParameterChangeGestureBegin (juce::AudioProcessor*, int index) override;
    void audioProcessorParameterChangeGestureEnd (juce::AudioProcessor*, int index) override;

    void presetSaved (Preset) override {}

    void presetLoading() override;
    void presetLoaded (Preset) override;

    Kept& getHeard() { return sides[static_cast<size_t> (heard)]; }

    [[nodiscard]] bool isUsersDoing() const;
    [[nodiscard]] bool isInGesture() const;
    void dropOutdated();
    void recordGestures();
    bool continuesRun();
    void recordStateChange (Kept&, const juce::ValueTree& before, const juce::ValueTree& after,
                            const juce::String& name);
    void restore (const juce::ValueTree& state);

    juce::AudioProcessor& processor;
    PresetManager& presetManager;
    const StateAccess access;

    std::array<Kept, 2> sides;
    Side heard = Side::a;
    std::atomic<bool> isOutdated { false };

    /** While the changes that we hear of are our own. */
    bool isReplaying = false;

    /** While a step is put into the history. It has happened already, but the undo manager performs it. */
    bool isRecording = false;

    /** Of the gestures that are under way, and those that they overlap with; and when the first began. Times are in
        milliseconds of `getMillisecondCounter`. */
    std::vector<ParameterChange> changes;
    juce::uint32 startTime = 0;

    /** Before the preset that is being loaded. */
    juce::ValueTree stateBeforePreset;

    /** What the last step has moved at a stroke, from where, and when. */
    const juce::AudioProcessorParameter* lastParameter = nullptr;
    float startOfRun = 0.0f;
    juce::uint32 lastTime = 0;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (EditHistory)
};

} // namespace tessarin
