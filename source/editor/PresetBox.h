#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

/** The box of the presets. While something differs from the preset, an asterisk stands behind the name, which is no
    part of the text: that is the preset's. Message thread. */
class PresetBox final : public juce::ComboBox
{
public:
    PresetBox();

    void setChanged (bool isChangedNow);

    void paintOverChildren (juce::Graphics&) override;

private:
    bool isChanged = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PresetBox)
};

} // namespace tessarin
