#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include <functional>

namespace luna
{

/** The menu that a right click opens on every control of a parameter: what we have for it, what the editor can take
    back, and then what the host has, such as its automation. Message thread. */
class ParameterMenu final : private juce::MouseListener
{
public:
    /** `typeValue` opens the field for a value; without it the menu does not offer that. Without a parameter there is
        no menu. The control outlives this. */
    ParameterMenu (juce::Component& control, juce::RangedAudioParameter*,
                   std::function<void()> typeValue = {});
    ~ParameterMenu() override;

    /** The same for a control that is only painted on the component. */
    static void show (juce::Component&, juce::Point<int> placeOnScreen, juce::RangedAudioParameter&,
                      std::function<void()> typeValue);

    /** For any menu of a component: inside the editor, at whose scale it then is; the window around that belongs to the
        host. */
    [[nodiscard]] static juce::PopupMenu::Options getOptionsFor (juce::Component&);

private:
    void mouseDown (const juce::MouseEvent&) override;

    juce::Component& control;
    juce::RangedAudioParameter* const parameter;
    const std::function<void()> typeValue;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ParameterMenu)
};

} // namespace luna
