#pragma once

#include "presets/Preset.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <functional>
#include <memory>

namespace tessarin
{

class ToastManager;

/** Finds, lists, loads and saves the presets, and tells its listeners when the current one changed.

    A member of the processor. Message thread, but for what the restore of a host's state needs on any thread:
    `getCurrentPreset`, `getPresets`, `getNumPresets` and `selectByPath`, which take a small lock around the
    list and the current preset. Nothing here runs on the audio thread. The folders are not watched.
*/
class PresetManager
{
public:
    /** What the manager needs of the plug-in: the hooks around the capture and restore of state, and the lock that
        serialises them. `preset`: for a preset rather than the host; `initial`: of the default state. */
    class Owner
    {
    public:
        virtual ~Owner() = default;

        virtual void stateCaptured (juce::ValueTree& state, bool initial) = 0;
        virtual void beforeStateCapture (bool preset, bool initial) = 0;
        virtual void beforeStateRestore (bool preset, bool initial) = 0;
        virtual void afterStateCapture (bool preset, bool initial) = 0;
        virtual void afterStateRestore (bool preset, bool initial) = 0;

        [[nodiscard]] virtual const juce::CriticalSection& getStateLock() const = 0;
    };

    class Listener
    {
    public:
        virtual ~Listener() = default;

        /** After a save, with the new current preset. */
        virtual void presetSaved (Preset preset) = 0;

        /** After a load, with the new current preset. */
        virtual void presetLoaded (Preset preset) = 0;

        /** Soon after a host's restore, with the preset that it has made current. On the message thread, whichever
            thread the restore was on. */
        virtual void presetRestored (Preset) {}

        /** Before a load, while the state is still the one that it replaces. None may follow. */
        virtual void presetLoading() {}
    };

    /** Sees that the factory folder is up to date, scans the folders and makes the first preset current. All
        arguments must outlive the manager; the toast manager may be null. */
    PresetManager (Owner& owner, juce::AudioProcessorValueTreeState& parameters, ToastManager* toastManager,
                   const std::function<void (juce::ValueTree&)>* onStateRestored);

    /** Rebuilds tree and list from disk; reads every preset file. The current preset stays. */
    void loadPresets();

    /** Makes the preset with this list index current and applies it. False if there is none, or if its file
        is gone or unreadable; in that case it is current all the same, and nothing else has changed. A file
        with another product's state gives an error toast and the default patch. */
    bool loadPreset (int index);

    /** Captures the state and opens a file dialog for it, which outlives the editor. */
    void promptUserToSave (juce::String name, juce::String description, juce::String categories,
                           juce::String author);

    /** The state as the text of a preset file, without what came with it and makes it unreadable. */
    [[nodiscard]] juce::String makePresetText (const juce::String& description,
                                               const juce::String& categories, const juce::String& author);

    /** What follows when the dialog ends: writes the text, rescans, and makes the new preset current. An
        empty file is a cancelled dialog, and one without a name is a failure. The extension is added where it
        is missing, as the presets' scan asks for it; a file that then exists is not replaced, since nobody
        was asked. */
    void finishSaving (juce::File chosen, const juce::String& text);

    /** A host sends this index for the current preset, which a save has added. The number of programs is fixed when a
        VST3 module is loaded; JUCE's wrapper takes a later one for the last of them, and would load that in its place.
    */
    [[nodiscard]] bool isStandIn (int index) const;

    /** For a program number of the host; empty, and an error toast, if there is no such preset. */
    [[nodiscard]] juce::String getProgramName (int index);

    /** The folders' tree: see `PresetFiles`. */
    [[nodiscard]] const juce::ValueTree& getPresetTree() const { return presetTree; }

    [[nodiscard]] juce::Array<Preset> getPresets() const;
    [[nodiscard]] int getNumPresets() const;
    [[nodiscard]] Preset getCurrentPreset() const;

    /** What a load of the current preset sets, without loading it; invalid where that cannot be read. */
    [[nodiscard]] juce::ValueTree readCurrentPreset() const;

    /** For a host's restore: makes the first preset with this path current, as a state holds it (see
        `makeValidText`), else the first of all; with an empty list nothing changes. A relative path, as in the states
        that an LV2 bundle brings for hosts, begins in the folder of all presets. No file is looked at. The listeners
        are told later, on the message thread. */
    void selectByPath (const juce::String& path);

    void addListener (Listener* listener) { listeners.add (listener); }

    void removeListener (Listener* listener) { listeners.remove (listener); }

    /** A file was seen in the factory folder. */
    bool hasFactoryPresets = false;

    juce::File factoryFolder;
    juce::File userFolder;

    /** The default state; set once by the product's constructor. */
    std::shared_ptr<juce::XmlElement> initialState;

private:
    struct RestoreMessage final : juce::AsyncUpdater
    {
        explicit RestoreMessage (PresetManager& manager) : owner (manager) {}

        ~RestoreMessage() override { cancelPendingUpdate(); }

        void handleAsyncUpdate() override;

        PresetManager& owner;
    };

    std::unique_ptr<juce::XmlElement> select (int index);
    [[nodiscard]] std::unique_ptr<juce::XmlElement> readXml (const Preset&) const;
    [[nodiscard]] bool isOwn (const juce::XmlElement&) const;
    [[nodiscard]] juce::ValueTree makeTree (juce::XmlElement&) const;
    void applyState (juce::XmlElement& xml);
    bool selectFirst (const std::function<bool (const Preset&)>& isWanted);
    void selectFile (const juce::File& file);
    void updateHostDisplay();
    [[nodiscard]] bool isNewToHost() const;

    Owner& owner;
    juce::AudioProcessorValueTreeState& parameters;
    Preset currentPreset;
    ToastManager* toastManager;
    const std::function<void (juce::ValueTree&)>* onStateRestored;
    juce::ValueTree presetTree;
    juce::Array<Preset> presets;

    /** As many as a host knows. */
    int numProgramsAtStart = 0;

    std::unique_ptr<juce::FileChooser> fileChooser;
    juce::ListenerList<Listener> listeners;

    /** Covers `presets` and `currentPreset`; nothing is called with it held. */
    juce::CriticalSection lock;

    RestoreMessage restoreMessage { *this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetManager)
};

} // namespace tessarin
