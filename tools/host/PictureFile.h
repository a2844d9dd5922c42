#pragma once

#include <juce_graphics/juce_graphics.h>

/** Throws, before any work is done, unless `target` names a PNG file that is new or may be replaced. */
void checkPictureTarget (const juce::File& target, bool mayReplace);

/** Puts the whole picture into place, or throws and leaves `target` alone. */
void savePicture (const juce::Image& picture, const juce::File& target, bool mayReplace);
