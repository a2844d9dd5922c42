#include "PictureFile.h"

#include "AudioFile.h"
#include "Failure.h"

void checkPictureTarget (const juce::File& target, bool mayReplace)
{
    if (! target.hasFileExtension ("png"))
        throw Failure (target.getFullPathName() + ": a picture's name ends in .png");

    if (target.exists() && ! mayReplace)
        throw Failure (target.getFullPathName() + ": exists already; --force replaces it");
}

void savePicture (const juce::Image& picture, const juce::File& target, bool mayReplace)
{
    const juce::TemporaryFile unfinished (target, unfinishedFileFor (target));
    unfinished.deleteTemporaryFile();
    {
        juce::FileOutputStream stream (unfinished.getFile());

        if (stream.failedToOpen() || ! juce::PNGImageFormat().writeImageToStream (picture, stream))
            throw Failure (target.getFullPathName() + ": cannot be written");
    }

    moveIntoPlace (unfinished.getFile(), target, mayReplace);
}
