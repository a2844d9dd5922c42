#include "PresetManager.h"

#include "common/AtomicFile.h"
#include "common/BundleFolder.h"
#include "common/ConfigFolder.h"
#include "presets/FactoryFolder.h"
#include "presets/PresetFiles.h"
#include "state/CheckedXml.h"
#include "state/StateTree.h"
#include "state/StrictUtf8.h"
#include "widgets/ToastManager.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <algorithm>
#include <filesystem>

namespace tessarin
{

PresetManager::PresetManager (Owner& ownerToUse, juce::AudioProcessorValueTreeState& parametersToUse,
                              ToastManager* toastManagerToUse,
                              const std::function<void (juce::ValueTree&)>* onStateRestoredToUse)
    : owner (ownerToUse),
      parameters (parametersToUse),
      toastManager (toastManagerToUse),
      onStateRestored (onStateRestoredToUse)
{
    const auto presetRoot = getConfigFolder().getChildFile ("Presets");
    factoryFolder = presetRoot.getChildFile ("Factory");
    userFolder = presetRoot.getChildFile ("User");

    FactoryFolder::update (factoryFolder, getBundleResource ("Factory"), JucePlugin_VersionString);
    loadPresets();
    numProgramsAtStart = presets.size();

    if (! presets.isEmpty())
        currentPreset = presets.getFirst();
}

void PresetManager::loadPresets()
{
    const auto stateTag = StateTree::makeTag (parameters.processor.getName());
    auto foundUserFile = false;

    presetTree = juce::ValueTree ("presets");
    presetTree.appendChild (
        PresetFiles::scanFolder (factoryFolder, "Factory", stateTag, true, hasFactoryPresets), nullptr);
    presetTree.appendChild (PresetFiles::scanFolder (userFolder, "User", stateTag, false, foundUserFile),
                            nullptr);

    juce::Array<Preset> list;
    PresetFiles::appendToList (presetTree, list);

    const juce::ScopedLock scope (lock);
    presets.swapWith (list);
}

bool PresetManager::loadPreset (int index)
{
    const auto isInitial = index == 0;
    owner.beforeStateRestore (true, isInitial);
    listeners.call ([] (Listener& listener) { listener.presetLoading(); });

    {
        // A host may capture or restore state on another thread: name and values change together.
        const juce::ScopedLock scope (owner.getStateLock());
        const auto xml = select (index);

        if (xml == nullptr)
            return false;

        applyState (*xml);
    }

    listeners.call ([preset = getCurrentPreset()] (Listener& listener) { listener.presetLoaded (preset); });
    owner.afterStateRestore (true, isInitial);
    return true;
}

/** Makes the preset current, whether or not its file can be read, and returns its state. */
std::unique_ptr<juce::XmlElement> PresetManager::select (int index)
{
    Preset selected;

    {
        const juce::ScopedLock scope (lock);

        if (! juce::isPositiveAndBelow (index, presets.size()))
            return nullptr;

        selected = currentPreset = presets[index];
    }

    return readXml (selected);
}

/** The first preset is the default patch, whatever lies there. */
std::unique_ptr<juce::XmlElement> PresetManager::readXml (const Preset& preset) const
{
    if (preset.index == 0 && initialState != nullptr)
        return std::make_unique<juce::XmlElement> (*initialState);

    return parseCheckedXml (juce::File (preset.path));
}

juce::ValueTree PresetManager::readCurrentPreset() const
{
    const auto xml = readXml (getCurrentPreset());
    return xml != nullptr ? makeTree (*xml) : juce::ValueTree();
}

/** Another product's state gives the default patch. */
juce::ValueTree PresetManager::makeTree (juce::XmlElement& xml) const
{
    StateTree::normaliseTag (xml);
    auto tree = juce::ValueTree::fromXml (isOwn (xml) ? xml : *initialState);

    StateTree::sanitise (tree);
    StateTree::addMissingParameters (tree, parameters, StateTree::MissingValue::defaultValue);
    return tree;
}

bool PresetManager::isOwn (const juce::XmlElement& xml) const
{
    return xml.getTagName() == StateTree::makeTag (parameters.processor.getName());
}

void PresetManager::applyState (juce::XmlElement& xml)
{
    auto tree = makeTree (xml);

    if (! isOwn (xml) && toastManager != nullptr)
        toastManager->showError ("Invalid preset");

    if (*onStateRestored)
        (*onStateRestored) (tree);

    parameters.replaceState (tree);
}

juce::String PresetManager::makePresetText (const juce::String& description, const juce::String& categories,
                                            const juce::String& author)
{
    owner.beforeStateCapture (true, false);

    juce::ValueTree state;

    {
        const juce::ScopedLock scope (owner.getStateLock());
        state = parameters.copyState();
    }

    owner.stateCaptured (state, false);

    state.removeProperty (StateTree::presetPath, nullptr);

    const auto render = [&] (const juce::ValueTree& tree)
    {
        const auto xml = tree.createXml();
        xml->setAttribute (PresetFiles::author, author);
        xml->setAttribute (PresetFiles::description, description);
        xml->setAttribute (PresetFiles::categories, categories);

        constexpr size_t initialSize = 2048;
        juce::MemoryOutputStream text (initialSize);
        xml->writeTo (text);
        return text.toUTF8();
    };

    auto text = render (state);
    return isCheckedXml (text.toRawUTF8()) ? text : render (StateTree::makeBareState (state, parameters));
}

void PresetManager::promptUserToSave (juce::String name, juce::String description, juce::String categories,
                                      juce::String author)
{
    const auto text = makePresetText (description, categories, author);

    // The dialog adds no extension by itself, and its warning must be about the file that will be written. A name may
    // begin with "~", which getChildFile would take for somebody's home.
    const auto initialFile =
        name.isEmpty() ? userFolder
                       : juce::File (userFolder.getFullPathName() + "/" + name + PresetFiles::fileExtension);

    fileChooser = std::make_unique<juce::FileChooser> ("Choose the location to save...", initialFile,
                                                       juce::String ("*") + PresetFiles::fileExtension);

    // JUCE moves the process, which is the host, to the dialog's folder, and leaves it there.
    const auto workingDirectory = juce::File::getCurrentWorkingDirectory();

    fileChooser->launchAsync (
        juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::canSelectFiles
            | juce::FileBrowserComponent::warnAboutOverwriting,
        [this, text] (const juce::FileChooser& chooser) { finishSaving (chooser.getResult(), text); });

    workingDirectory.setAsCurrentWorkingDirectory();
}

void PresetManager::finishSaving (juce::File chosen, const juce::String& text)
{
    if (chosen == juce::File())
        return;

    const auto addsExtension = ! chosen.getFileName().endsWith (PresetFiles::fileExtension);

    if (addsExtension)
        chosen = juce::File (chosen.getFullPathName() + PresetFiles::fileExtension);

    // The dialog has warned about the name as it was typed, not about this one.
    const auto wouldReplaceUnasked = addsExtension && chosen.exists();

    if (wouldReplaceUnasked)
        juce::Logger::writeToLog ("Preset not saved, since this file exists: " + chosen.getFullPathName());

    const auto hasName = chosen.getFileName() != PresetFiles::fileExtension;
    const std::string_view bytes (text.toRawUTF8(), text.getNumBytesAsUTF8());

    // With too long a description, no scan would read the file.
    if (! hasName || wouldReplaceUnasked || ! isCheckedXml (bytes)
        || ! replaceFileAtomically (chosen, bytes.data(), bytes.size()))
    {
        if (toastManager != nullptr)
            toastManager->showError ("Couldn't save preset!");

        return;
    }

    owner.afterStateCapture (true, false);
    updateHostDisplay();

    loadPresets();
    selectFile (chosen);
    updateHostDisplay();

    if (toastManager != nullptr)
        toastManager->showToast ("Preset saved", toastSuccess, true);

    listeners.call ([preset = getCurrentPreset()] (Listener& listener) { listener.presetSaved (preset); });
}

/** The dialog may have taken another road to the folder than the scan: through a symbolic link, or past one. */
void PresetManager::selectFile (const juce::File& file)
{
    const auto toPath = [] (const juce::String& path) { return std::filesystem::path (path.toStdString()); };
    const auto& path = file.getFullPathName();

    if (selectFirst ([&] (const Preset& preset) { return preset.path == path; }))
        return;

    selectFirst (
        [&] (const Preset& preset)
        {
            std::error_code failure;
            return std::filesystem::equivalent (toPath (preset.path), toPath (path), failure);
        });
}

void PresetManager::updateHostDisplay()
{
    using Details = juce::AudioProcessorListener::ChangeDetails;

    parameters.processor.updateHostDisplay (Details::getDefaultFlags().withProgramChanged (! isNewToHost()));
}

bool PresetManager::isNewToHost() const
{
    return getCurrentPreset().index >= numProgramsAtStart;
}

bool PresetManager::isStandIn (int index) const
{
    return isNewToHost() && index == numProgramsAtStart - 1;
}

juce::String PresetManager::getProgramName (int index)
{
    {
        const juce::ScopedLock scope (lock);

        if (juce::isPositiveAndBelow (index, presets.size()))
            return presets.getReference (index).name;

        if (index == 0)
            return currentPreset.name;
    }

    if (toastManager != nullptr)
        toastManager->showError ("Invalid preset index: " + juce::String (index));
    else
        juce::Logger::writeToLog ("ERROR: Invalid preset to get by index: " + juce::String (index));

    return {};
}

juce::Array<Preset> PresetManager::getPresets() const
{
    const juce::ScopedLock scope (lock);
    return presets;
}

int PresetManager::getNumPresets() const
{
    const juce::ScopedLock scope (lock);
    return presets.size();
}

Preset PresetManager::getCurrentPreset() const
{
    const juce::ScopedLock scope (lock);
    return currentPreset;
}

void PresetManager::selectByPath (const juce::String& path)
{
    const auto isWithinPresets = path.isNotEmpty() && ! juce::File::isAbsolutePath (path);
    const auto wanted =
        isWithinPresets ? makeValidText (factoryFolder.getSiblingFile (path).getFullPathName()) : path;

    {
        const juce::ScopedLock scope (lock);

        if (! presets.isEmpty())
            currentPreset = presets.getFirst();

        selectFirst ([&wanted] (const Preset& preset) { return makeValidText (preset.path) == wanted; });
    }

    restoreMessage.triggerAsyncUpdate();
}

void PresetManager::RestoreMessage::handleAsyncUpdate()
{
    owner.listeners.call ([preset = owner.getCurrentPreset()] (Listener& listener)
                          { listener.presetRestored (preset); });
}

bool PresetManager::selectFirst (const std::function<bool (const Preset&)>& isWanted)
{
    const juce::ScopedLock scope (lock);
    const auto* found = std::find_if (presets.begin(), presets.end(), isWanted);

    if (found == presets.end())
        return false;

    currentPreset = *found;
    return true;
}

} // namespace tessarin
