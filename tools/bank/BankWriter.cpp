#include "BankWriter.h"

#include "common/AtomicFile.h"
#include "core/OrvoAudioProcessor.h"
#include "presets/PresetFiles.h"

namespace factoryBank
{

namespace
{
juce::Result write (const juce::File& file, const juce::String& text)
{
    if (file.getParentDirectory().createDirectory().failed()
        || ! replaceFileAtomically (file, text.toRawUTF8(), text.getNumBytesAsUTF8()))
        return juce::Result::fail ("could not write " + file.getFullPathName());

    return juce::Result::ok();
}

juce::Result writePreset (OrvoAudioProcessor& processor, const Entry& entry, const juce::File& folder)
{
    if (! apply (entry, processor))
        return juce::Result::fail ("unknown parameter in preset " + entry.name);

    return write (folder.getChildFile (entry.name + tessarin::PresetFiles::fileExtension),
                  processor.presetManager.makePresetText (entry.description, entry.categories, author));
}
} // namespace

bool apply (const Entry& entry, OrvoAudioProcessor& processor)
{
    auto state = juce::ValueTree::fromXml (*processor.presetManager.initialState);

    for (const auto& [id, value] : entry.settings)
    {
        auto parameter = state.getChildWithProperty ("id", juce::String (id));

        if (! parameter.isValid())
            return false;

        parameter.setProperty ("value", value, nullptr);
    }

    processor.parameters.replaceState (state);
    return true;
}

juce::Result writeBank (OrvoAudioProcessor& processor, const juce::File& target)
{
    for (const auto& folder : getFolders())
    {
        const auto place = target.getChildFile (folder.name);

        if (const auto result = write (place.getChildFile ("_description.txt"), folder.description);
            result.failed())
            return result;

        for (const auto& entry : folder.presets)
            if (const auto result = writePreset (processor, entry, place); result.failed())
                return result;
    }

    return juce::Result::ok();
}

} // namespace factoryBank
