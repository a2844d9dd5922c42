#include "PresetBrowser.h"

#include "common/ColourIds.h"

namespace tessarin
{

PresetBrowser::PresetBrowser (PresetManager& manager) : presetManager (manager)
{
    presetManager.addListener (this);
}

PresetBrowser::~PresetBrowser()
{
    presetManager.removeListener (this);
}

void PresetBrowser::presetSaved (Preset)
{
    repaint();
}

void PresetBrowser::presetLoaded (Preset)
{
    repaint();
}

void PresetBrowser::paint (juce::Graphics& g)
{
    g.fillAll (findColour (luna::ColourIds::backgroundColourId));
}

} // namespace tessarin
