#include "EditHistory.h"

#include "widgets/ParameterGesture.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tessarin
{

namespace
{
/** In units of one parameter in one gesture; a whole state takes some forty times its memory. A thousand turns of
    knobs, or 25 presets. */
constexpr auto mostUnits = 1000;
constexpr auto unitsOfState = 40;
constexpr auto fewestSteps = 25;
} // namespace

//======================================================================================================================
// Steps

class EditHistory::Gesture final : public juce::UndoableAction
{
public:
    Gesture (EditHistory& h, std::vector<ParameterChange> c) : history (h), changes (std::move (c)) {}

    bool perform() override { return history.isRecording || set (true); }

    bool undo() override { return set (false); }

    int getSizeInUnits() override { return static_cast<int> (changes.size()); }

    /** Of a run, so that the host hears of one gesture when it is taken back. */
    juce::UndoableAction* createCoalescedAction (juce::UndoableAction* next) override
    {
        auto run = changes;
        run.front().after = static_cast<Gesture*> (next)->changes.front().after;
        return new Gesture (history, std::move (run));
    }

private:
    bool set (bool isDone)
    {
        const juce::ScopedValueSetter<bool> scope (history.isReplaying, true);

        for (const auto& change : changes)
            luna::setInOneGesture (*change.parameter, isDone ? change.after : change.before);

        return true;
    }

    EditHistory& history;
    const std::vector<ParameterChange> changes;
};

class EditHistory::StateChange final : public juce::UndoableAction
{
public:
    StateChange (EditHistory& h, juce::ValueTree b, juce::ValueTree a)
        : history (h), before (std::move (b)), after (std::move (a))
    {
    }

    bool perform() override
    {
        if (! history.isRecording)
            history.restore (after);

        return true;
    }

    bool undo() override
    {
        history.restore (before);
        return true;
    }

    int getSizeInUnits() override { return unitsOfState; }

private:
    EditHistory& history;
    const juce::ValueTree before, after;
};

void EditHistory::restore (const juce::ValueTree& state)
{
    const juce::ScopedValueSetter<bool> scope (isReplaying, true);
    access.restore (state);
}

//======================================================================================================================

EditHistory::EditHistory (juce::AudioProcessor& p, PresetManager& manager, StateAccess stateAccess)
    : processor (p), presetManager (manager), access (std::move (stateAccess))
{
    for (auto& side : sides)
        side.steps.setMaxNumberOfStoredUnits (mostUnits, fewestSteps);

    processor.addListener (this);
    presetManager.addListener (this);
}

EditHistory::~EditHistory()
{
    presetManager.removeListener (this);
    processor.removeListener (this);
}

bool EditHistory::undo()
{
    dropOutdated();
    lastParameter = nullptr;
    return ! isInGesture() && getHeard().steps.undo();
}

bool EditHistory::redo()
{
    dropOutdated();
    lastParameter = nullptr;
    return ! isInGesture() && getHeard().steps.redo();
}

juce::String EditHistory::getUndoName() const
{
    return isOutdated ? juce::String() : sides[static_cast<size_t> (heard)].steps.getUndoDescription();
}

juce::String EditHistory::getRedoName() const
{
    return isOutdated ? juce::String() : sides[static_cast<size_t> (heard)].steps.getRedoDescription();
}

void EditHistory::dropOutdated()
{
    if (! isOutdated.exchange (false))
        return;

    getHeard().steps.clearUndoHistory();
    changes.clear();
    stateBeforePreset = {};
    lastParameter = nullptr;
}

//======================================================================================================================
// A and B

void EditHistory::listenTo (Side side)
{
    dropOutdated();

    if (side == heard || isInGesture())
        return;

    const auto present = access.capture();
    getHeard().state = present;
    heard = side;
    lastParameter = nullptr;

    if (getHeard().state.isValid())
        restore (getHeard().state);
}

void EditHistory::copyAToB()
{
    dropOutdated();

    if (isInGesture())
        return;

    auto& [a, b] = sides;
    const auto present = access.capture();
    const auto& newB = heard == Side::a ? present : a.state;
    const auto& oldB = heard == Side::a ? b.state : present;

    if (oldB.isValid())
        recordStateChange (b, oldB, newB, "Copy of A");

    if (heard == Side::b)
        restore (newB);
    else
        b.state = newB;
}

//======================================================================================================================
// Recording

/** A host's program changes may come on any thread. */
bool EditHistory::isUsersDoing() const
{
    return juce::MessageManager::existsAndIsCurrentThread() && ! isReplaying;
}

void EditHistory::audioProcessorParameterChangeGestureBegin (juce::AudioProcessor*, int index)
{
    if (! isUsersDoing())
        return;

    dropOutdated();

    if (changes.empty())
        startTime = getMillisecondCounter();

    auto* parameter = processor.getParameters()[index];
    const auto isIt = [parameter] (const ParameterChange& change) { return change.parameter == parameter; };

    if (const auto known = std::find_if (changes.begin(), changes.end(), isIt); known != changes.end())
        known->isOpen = true;
    else
        changes.push_back ({ parameter, parameter->getValue(), parameter->getValue(), true });
}

void EditHistory::audioProcessorParameterChangeGestureEnd (juce::AudioProcessor*, int index)
{
    if (! isUsersDoing())
        return;

    dropOutdated();

    for (auto& change : changes)
        if (change.parameter->getParameterIndex() == index)
        {
            change.after = change.parameter->getValue();
            change.isOpen = false;
        }

    if (! isInGesture())
        recordGestures();
}

bool EditHistory::isInGesture() const
{
    return std::any_of (changes.begin(), changes.end(),
                        [] (const ParameterChange& change) { return change.isOpen; });
}

void EditHistory::recordGestures()
{
    std::erase_if (changes, [] (const ParameterChange& change)
                   { return juce::approximatelyEqual (change.before, change.after); });

    if (changes.empty())
        return;

    auto& steps = getHeard().steps;
    const auto isRun = continuesRun();

    if (! isRun)
    {
        steps.beginNewTransaction (changes.front().parameter->getName (std::numeric_limits<int>::max()));
        startOfRun = changes.front().before;
    }

    const auto end = changes.front().after;

    {
        const juce::ScopedValueSetter<bool> scope (isRecording, true);
        steps.perform (new Gesture (*this, std::exchange (changes, {})));
    }

    // There and back is no step, and what could be brought again before it still can.
    if (isRun && juce::approximatelyEqual (end, startOfRun))
    {
        steps.undoCurrentTransactionOnly();
        lastParameter = nullptr;
    }
}

/** Whether the changes follow others so soon that they are one to the user: a wheel that is turned, or a key that is
    held. A drag is a step of its own. */
bool EditHistory::continuesRun()
{
    constexpr juce::uint32 longestStrokeInMs = 50;
    constexpr juce::uint32 longestPauseInMs = 500;

    const auto now = getMillisecondCounter();
    const auto isStroke = changes.size() == 1 && now - startTime <= longestStrokeInMs;
    const auto* parameter = isStroke ? changes.front().parameter : nullptr;

    const auto isSoon = now - std::exchange (lastTime, now) <= longestPauseInMs;
    return std::exchange (lastParameter, parameter) == parameter && isStroke && isSoon;
}

void EditHistory::presetLoading()
{
    if (! isUsersDoing())
        return;

    dropOutdated();
    stateBeforePreset = access.capture();
}

void EditHistory::presetLoaded (Preset)
{
    if (! isUsersDoing())
        return;

    dropOutdated();

    if (const auto before = std::exchange (stateBeforePreset, {}); before.isValid())
        recordStateChange (getHeard(), before, access.capture(), "Preset");
}

void EditHistory::recordStateChange (Kept& side, const juce::ValueTree& before, const juce::ValueTree& after,
                                     const juce::String& name)
{
    lastParameter = nullptr;

    if (before.isEquivalentTo (after))
        return;

    const juce::ScopedValueSetter<bool> scope (isRecording, true);
    side.steps.beginNewTransaction (name);
    side.steps.perform (new StateChange (*this, before, after));
}

} // namespace tessarin
