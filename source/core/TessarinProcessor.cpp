#include "TessarinProcessor.h"

#include "common/Rounding.h"
#include "state/StateBlock.h"
#include "state/StateTree.h"
#include "state/StrictUtf8.h"

#include <cmath>

namespace tessarin
{

namespace
{
using Parameter = juce::AudioProcessorValueTreeState::Parameter;

/** Gives the range the present value in place of one that is no number, so that it stays. Hosts automate with such
    values and people type them, and JUCE would store them, for the next change of any parameter to carry them into the
    audio. All of them come through here: from the host, as text, from a control and from a state. Any thread. */
void refuseWhatIsNoNumber (Parameter& parameter)
{
    const auto original = parameter.range;
    auto& range = parameter.range;

    const auto snap = [original, &parameter] (float, float, float value)
    { return original.snapToLegalValue (std::isfinite (value) ? value : parameter.get()); };

    range = { original.start, original.end, {}, {}, snap };
    range.interval = original.interval;
    range.skew = original.skew;
    range.symmetricSkew = original.symmetricSkew;
}
} // namespace

TessarinProcessor::TessarinProcessor (const BusesProperties& buses)
    : juce::AudioProcessor (buses),
      parameters (*this, nullptr),
      presetManager (*this, parameters, &toastManager, &onStateRestored),
      logger (TessarinLogger::getDefaultFile()),
      editHistory (*this, presetManager,
                   { .capture = [this] { return captureState(); },
                     .restore = [this] (const juce::ValueTree& state) { restoreState (state); } }),
      liveTreeMarker (*this)
{
}

TessarinProcessor::~TessarinProcessor()
{
    removeParameterListeners();
    stopTimer();
}

const juce::String TessarinProcessor::getName() const
{
    return JucePlugin_Name;
}

void TessarinProcessor::processBlock (juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midi)
{
    const juce::ScopedNoDenormals noDenormals;

    if (licenceManager.isAudioBlocked())
    {
        buffer.clear();
        midi.clear();
        return;
    }

    processAudio (buffer);
}

int TessarinProcessor::getNumPrograms()
{
    return presetManager.getNumPresets();
}

int TessarinProcessor::getCurrentProgram()
{
    return presetManager.getCurrentPreset().index;
}

void TessarinProcessor::setCurrentProgram (int index)
{
    // Hosts that restore a project set its program as well, which would undo the restore.
    constexpr juce::uint32 quietTimeMs = 1000;

    // A restore that comes in between would be overwritten.
    const juce::ScopedLock scope (stateLock);

    if (getMillisecondCounter() - lastStateRestoreTime < quietTimeMs || presetManager.isStandIn (index))
        return;

    if (presetManager.loadPreset (index))
        editHistory.forget();
}

const juce::String TessarinProcessor::getProgramName (int index)
{
    return presetManager.getProgramName (index);
}

void TessarinProcessor::captureInitialState()
{
    juce::ValueTree root { StateTree::makeTag (getName()),
                           { { StateTree::version, JucePlugin_VersionString } } };
    StateTree::sanitise (root);
    parameters.replaceState (root);

    beforeStateCapture (true, true);

    auto state = parameters.copyState();
    stateCaptured (state, true);
    presetManager.initialState = state.createXml();

    afterStateCapture (true, true);
}

void TessarinProcessor::getStateInformation (juce::MemoryBlock& destData)
{
    const juce::ScopedLock scope (stateLock);

    if (licenceManager.isStateFrozen())
    {
        // juce::MemoryBlock would copy an empty block from a null pointer.
        if (lastRestoredState.isEmpty())
            destData.reset();
        else
            destData = lastRestoredState;

        return;
    }

    if (! parameters.state.isValid())
        return;

    beforeStateCapture (false, false);

    const auto state = captureState();
    copyXmlToBinary (*state.createXml(), destData);

    if (! isReadableStateBlock (destData.getData(), static_cast<int> (destData.getSize())))
        copyXmlToBinary (*StateTree::makeBareState (state, parameters).createXml(), destData);

    if (juce::MessageManager::existsAndIsCurrentThread())
        markCaptured (parameters.state);
    else
        liveTreeMarker.triggerAsyncUpdate();

    afterStateCapture (false, false);
}

/** With preset and version, which the live tree has only after a capture for the host. Any thread. */
juce::ValueTree TessarinProcessor::captureState()
{
    const juce::ScopedLock scope (stateLock);

    auto state = parameters.copyState();
    markCaptured (state);
    return state;
}

void TessarinProcessor::markCaptured (juce::ValueTree& state)
{
    state.setProperty (StateTree::presetPath, makeValidText (presetManager.getCurrentPreset().path), nullptr);
    state.setProperty (StateTree::version, JucePlugin_VersionString, nullptr);
}

void TessarinProcessor::LiveTreeMarker::handleAsyncUpdate()
{
    const juce::ScopedLock scope (owner.stateLock);
    owner.markCaptured (owner.parameters.state);
}

void TessarinProcessor::setStateInformation (const void* data, int sizeInBytes)
{
    const juce::ScopedLock scope (stateLock);

    // Also a block that turns out to be bad holds off the host's program change.
    lastStateRestoreTime = getMillisecondCounter();

    const auto xml = parseStateBlock (data, sizeInBytes);

    if (xml == nullptr)
        return;

    StateTree::normaliseTag (*xml);
    auto tree = juce::ValueTree::fromXml (*xml);

    if (! tree.hasType (parameters.state.getType()))
        return;

    lastRestoredState.replaceAll (data, static_cast<size_t> (sizeInBytes));

    if (licenceManager.isRestoreRefused())
        return;

    editHistory.forget();
    applyRestoredState (tree);
}

void TessarinProcessor::restoreState (const juce::ValueTree& state)
{
    const juce::ScopedLock scope (stateLock);
    applyRestoredState (state.createCopy());
}

void TessarinProcessor::applyRestoredState (juce::ValueTree tree)
{
    beforeStateRestore (false, false);

    StateTree::sanitise (tree);
    StateTree::addMissingParameters (tree, parameters, StateTree::MissingValue::present);

    if (onStateRestored)
        onStateRestored (tree);

    const auto path = tree[StateTree::presetPath].toString();
    tree.removeProperty (StateTree::presetPath, nullptr);
    liveTreeMarker.cancelPendingUpdate();

    parameters.replaceState (tree);
    presetManager.selectByPath (path);

    afterStateRestore (false, false);
}

bool TessarinProcessor::isBusesLayoutSupported (const BusesLayout& layouts) const
{
    constexpr auto mostChannels = 2;

    const auto input = layouts.getMainInputChannelSet();
    const auto output = layouts.getMainOutputChannelSet();

    return input.size() <= mostChannels && output.size() <= mostChannels && input == output
           && input.size() >= 1;
}

NumberValue TessarinProcessor::addParameterFloat (juce::String id, juce::String name, float min, float max,
                                                  float defaultValue, juce::String unit, int decimals,
                                                  bool listen)
{
    auto toText = [unit = std::move (unit), decimals] (float value)
    {
        if (decimals == 0)
            return juce::String (juce::roundToInt (value)) + unit;

        return juce::String (value, decimals) + unit;
    };

    return addParameterRange (std::move (id), std::move (name), { min, max }, defaultValue,
                              std::move (toText), {}, listen);
}

ChoiceValue TessarinProcessor::addParameterChoice (juce::String id, juce::String name,
                                                   juce::StringArray choices, int defaultIndex, bool listen)
{
    const auto last = static_cast<float> (choices.size() - 1);
    auto toText = [choices = std::move (choices)] (float value) { return choices[roundToChoice (value)]; };

    return { addParameterRange (std::move (id), std::move (name), { 0.0f, last },
                                static_cast<float> (defaultIndex), std::move (toText), {}, listen) };
}

SwitchValue TessarinProcessor::addParameterBool (juce::String id, juce::String name, juce::String offText,
                                                 juce::String onText, bool defaultValue, bool listen)
{
    auto toText = [offText = std::move (offText), onText = std::move (onText)] (float value)
    { return roundToSwitch (value) ? onText : offText; };

    return { addParameterRange (std::move (id), std::move (name), { 0.0f, 1.0f }, defaultValue ? 1.0f : 0.0f,
                                std::move (toText), {}, listen) };
}

NumberValue TessarinProcessor::addParameterRange (juce::String id, juce::String name,
                                                  juce::NormalisableRange<float> range, float defaultValue,
                                                  std::function<juce::String (float)> valueToText,
                                                  std::function<float (const juce::String&)> textToValue,
                                                  bool listen)
{
    constexpr auto versionHint = 1;

    auto attributes = juce::AudioProcessorValueTreeStateParameterAttributes();

    if (valueToText)
        attributes = attributes.withStringFromValueFunction (
            [valueToText = std::move (valueToText)] (float value, int) { return valueToText (value); });

    if (textToValue)
        attributes = attributes.withValueFromStringFunction (std::move (textToValue));

    auto parameter = std::make_unique<Parameter> (juce::ParameterID { id, versionHint }, name, range,
                                                  defaultValue, attributes);
    refuseWhatIsNoNumber (*parameter);
    parameters.createAndAddParameter (std::move (parameter));

    if (listen)
    {
        parameters.addParameterListener (id, this);
        listenedParameterIds.add (id);
    }

    return { { *parameters.getRawParameterValue (id) } };
}

void TessarinProcessor::removeParameterListeners()
{
    for (const auto& id : listenedParameterIds)
        parameters.removeParameterListener (id, this);

    listenedParameterIds.clear();
}

} // namespace tessarin
