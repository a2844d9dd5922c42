#pragma once

#include "presets/PresetManager.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** The panel over the editor in which presets are found by folder and category. Message thread. */
class PresetBrowser final : public juce::Component, public PresetManager::Listener
{
public:
    explicit PresetBrowser (PresetManager& manager);
    ~PresetBrowser() override;

    void presetSaved (Preset preset) override;
    void presetLoaded (Preset preset) override;

    void paint (juce::Graphics&) override;

private:
    PresetManager& presetManager;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetBrowser)
};

} // namespace tessarin
