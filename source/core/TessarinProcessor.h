#pragma once

#include "core/EditHistory.h"
#include "core/LicenceManager.h"
#include "core/ParameterValue.h"
#include "presets/PresetManager.h"
#include "settings/SettingsFile.h"
#include "settings/TessarinLogger.h"
#include "widgets/ToastManager.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <atomic>

namespace tessarin
{

/** Base of the maker's plug-ins: owns parameters and licensing, and implements the host's calls that do not
    depend on the product.

    docs/threading.md tells which thread makes which call, and all locks.
*/
class TessarinProcessor : public juce::AudioProcessor,
                          public juce::Timer,
                          public juce::AudioProcessorValueTreeState::Listener,
                          public PresetManager::Owner
{
public:
    explicit TessarinProcessor (const BusesProperties& buses);
    ~TessarinProcessor() override;

    const juce::String getName() const override;

    void releaseResources() override {}

    void memoryWarningReceived() override {}

    /** Audio thread. Silence while licensing blocks the audio, else `processAudio`; MIDI is left alone. */
    void processBlock (juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midi) override;
    using juce::AudioProcessor::processBlock;

    bool acceptsMidi() const override { return false; }

    bool producesMidi() const override { return false; }

    double getTailLengthSeconds() const override { return 0.0; }

    bool hasEditor() const override { return true; }

    int getNumPrograms() override;
    int getCurrentProgram() override;
    void setCurrentProgram (int index) override;
    const juce::String getProgramName (int index) override;

    void changeProgramName (int, const juce::String&) override {}

    /** Any thread. Takes `stateLock`, as does a preset's load. */
    void getStateInformation (juce::MemoryBlock& destData) override;

    /** Any thread. A block that is damaged or of another product changes nothing. */
    void setStateInformation (const void* data, int sizeInBytes) override;

    /** Mono to mono or stereo to stereo. */
    bool isBusesLayoutSupported (const BusesLayout& layouts) const override;

    /** For the product; see `PresetManager::Owner`. */
    void stateCaptured (juce::ValueTree&, bool /*initial*/) override {}

    void beforeStateCapture (bool /*preset*/, bool /*initial*/) override {}

    void beforeStateRestore (bool /*preset*/, bool /*initial*/) override {}

    void afterStateCapture (bool /*preset*/, bool /*initial*/) override {}

    void afterStateRestore (bool /*preset*/, bool /*initial*/) override {}

    const juce::CriticalSection& getStateLock() const override { return stateLock; }

    /** The product's audio, in place. Audio thread. */
    virtual void processAudio (juce::AudioBuffer<float>& buffer) = 0;

    /** The timer belongs to licensing, which uses none here. */
    void timerCallback() override {}

    void parameterChanged (const juce::String& parameterID, float newValue) override = 0;

    /** The helpers below make a parameter and add it at once. A value that is no number leaves it as it is. With
        `listen` its changes arrive in `parameterChanged`. A float parameter's text is the value with `decimals`
        decimals and the unit, with no blank. */
    NumberValue addParameterFloat (juce::String id, juce::String name, float min, float max,
                                   float defaultValue, juce::String unit, int decimals, bool listen);

    /** The value is the index of the choice, read with `roundToChoice`. */
    ChoiceValue addParameterChoice (juce::String id, juce::String name, juce::StringArray choices,
                                    int defaultIndex, bool listen);

    SwitchValue addParameterBool (juce::String id, juce::String name, juce::String offText,
                                  juce::String onText, bool defaultValue, bool listen);

    /** An empty `textToValue` leaves typed values to JUCE's parsing of numbers. */
    NumberValue addParameterRange (juce::String id, juce::String name, juce::NormalisableRange<float> range,
                                   float defaultValue, std::function<juce::String (float)> valueToText,
                                   std::function<float (const juce::String&)> textToValue, bool listen);

    juce::AudioProcessorValueTreeState parameters;

    /** Owned here, so that a message can wait for an editor, which adopts it. */
    ToastManager toastManager;
    PresetManager presetManager;

    /** Serialises the capture and the restore of state. */
    juce::CriticalSection stateLock;

    SettingsFile settings;
    std::function<void (juce::ValueTree&)> onStateRestored;

    /** In milliseconds of `getMillisecondCounter`. */
    std::atomic<juce::uint32> lastStateRestoreTime { 0 };

    TessarinLogger logger;
    juce::StringArray listenedParameterIds;
    LicenceManager licenceManager;

    /** The bytes of the last accepted state. */
    juce::MemoryBlock lastRestoredState;

    /** Of what the user does in the window; it outlives that. */
    EditHistory editHistory;

    /** The clock of the state calls; replaced by tests. */
    std::function<juce::uint32()> getMillisecondCounter = juce::Time::getMillisecondCounter;

protected:
    /** Gives the parameter tree its type and version, and keeps the present state as the default patch. For
        the product's constructor, when all parameters are added. */
    void captureInitialState();

    /** For the product's destructor: after it, no change arrives any more. */
    void removeParameterListeners();

private:
    /** Brings what a capture on another thread adds into the live tree. JUCE's timer writes parameters into that
        tree on the message thread, and calls the same listeners, without `stateLock`. */
    struct LiveTreeMarker final : juce::AsyncUpdater
    {
        explicit LiveTreeMarker (TessarinProcessor& processor) : owner (processor) {}

        ~LiveTreeMarker() override { cancelPendingUpdate(); }

        void handleAsyncUpdate() override;

        TessarinProcessor& owner;
    };

    [[nodiscard]] juce::ValueTree captureState();
    void markCaptured (juce::ValueTree& state);
    void restoreState (const juce::ValueTree& state);
    void applyRestoredState (juce::ValueTree tree);

    LiveTreeMarker liveTreeMarker;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (TessarinProcessor)
};

} // namespace tessarin
