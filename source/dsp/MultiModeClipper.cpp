#include "MultiModeClipper.h"

namespace
{
/** Half the knee's width at the top of the shape control. */
constexpr auto widestKneeDb = 9.0f;
} // namespace

MultiModeClipper::MultiModeClipper()
{
    addMode (hardClipper, "Hard", "Shape", clippersGroup,
             [this] { pushParameter (hardClipper, thresholdDb, 0); });

    addMode (softClipper, "Soft I", "Shape", clippersGroup,
             [this]
             {
                 pushParameter (softClipper, thresholdDb, 0);
                 pushParameter (softClipper,
                                juce::NormalisableRange<float> (0.0f, widestKneeDb).convertFrom0to1 (shape),
                                1);
             });

    addMode (dough, "Soft II", "Shape", clippersGroup, [this] { pushParameter (dough, thresholdDb, 0); });

    addMode (inflatorClipper, "Pressure", "Pressure", enhancersGroup,
             [this]
             {
                 pushParameter (inflatorClipper, thresholdDb, 0);
                 pushParameter (inflatorClipper, shape, 1);
             });

    addMode (boost, "Boost", "Boost", enhancersGroup,
             [this]
             {
                 pushParameter (boost, thresholdDb, 0);
                 pushParameter (boost, shape, 1);
             });

    setMode (modes.getReference (0).id);
}

void MultiModeClipper::process (const juce::dsp::ProcessContextReplacing<float>& context)
{
    if (! enabled)
        return;

    current->process (context);

    if (! juce::exactlyEqual (makeupGain, 1.0f))
        context.getOutputBlock().multiplyBy (makeupGain);
}

void MultiModeClipper::setParameter (float value, int index)
{
    if (index == 0)
        thresholdDb = value;
    else if (index == 1)
        shape = value;
    else if (index == 2)
        makeupGain = decibels::toGain (makeupDb = value);

    applyCurrentMode();
}

void MultiModeClipper::setLevels (float newThresholdDb, float newMakeupDb)
{
    const auto set = [this] (float value, int index, float present)
    {
        // The mode would only be given once more what it has.
        if (juce::exactlyEqual (value, present))
            current->raiseChangeCount (numPushes);
        else
            setParameter (value, index);

        raiseChangeCount();
    };

    set (newThresholdDb, 0, thresholdDb);
    set (newMakeupDb, 2, makeupDb);
}

void MultiModeClipper::prepareEffect (const juce::dsp::ProcessSpec& spec)
{
    for (auto& mode : modes)
        mode.saturator->prepare (spec);

    applyCurrentMode();
}

void MultiModeClipper::setMode (int id)
{
    for (auto& mode : modes)
        if (mode.id == id)
            current = mode.saturator;

    applyCurrentMode();

    const juce::ScopedLock scope (modeChangeLock);

    if (onModeChange)
        onModeChange();
}

void MultiModeClipper::setModeChangeHandler (std::function<void()> handler)
{
    // What is replaced dies with the argument, after the lock is released.
    const juce::ScopedLock scope (modeChangeLock);
    onModeChange.swap (handler);
}

void MultiModeClipper::addMode (luna::Saturator& saturator, const char* name, const char* shapeLabel,
                                const ModeGroup& group, std::function<void()> apply)
{
    const auto id = modes.size();
    modes.add ({ id, 1 << id, &saturator, name, shapeLabel, group.id, std::move (apply) });
}

void MultiModeClipper::applyCurrentMode()
{
    for (auto& mode : modes)
    {
        if (mode.saturator != current)
            continue;

        numPushes = 0;
        mode.apply();
        currentModeId = mode.id;
        return;
    }
}

void MultiModeClipper::pushParameter (luna::Saturator& saturator, float value, int index)
{
    saturator.setParameter (value, index);
    saturator.raiseChangeCount();
    ++numPushes;
}
