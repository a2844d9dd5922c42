#pragma once

#include <juce_core/juce_core.h>

/** The factory presets' way from the module's bundle into the user's folder. */
namespace tessarin::FactoryFolder
{
/** Copies the presets in `bank`, those of `version`, to `folder` if that does not exist or has those of an older
    version. One of this version or a newer one stays as it is, whatever the user took out of it, and so does a
    symbolic link.

    The folder changes in one step, whenever the process ends, and however many try it at once: another process or
    thread sees it as it was or as it will be. What the user has put into it is in the new one too, and what the user
    has changed lies beside the new preset, as "NAME (kept)". Whatever goes wrong, such as a disk that is full or
    cannot be written, changes nothing and is told nobody.

    Where nothing is to be done it looks at two files. Any thread but the audio's; it may wait for another process,
    for two seconds at most.
*/
void update (const juce::File& folder, const juce::File& bank, const juce::String& version);

} // namespace tessarin::FactoryFolder
