#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <vector>

namespace tessarin
{

/** Keeps the keyboard with what lies on top of the window, be it messages, a dialog or the browser, and gives it back
    to what had it before when that goes. What is covered gets no keys, as it gets no clicks. Message thread. */
class OverlayFocus final : private juce::ComponentListener, private juce::FocusChangeListener
{
public:
    /** The editor outlives this. `isInUse` tells whether the user is about in the window, though the keyboard may be
        elsewhere: an overlay that comes by itself must not take it from the host. */
    OverlayFocus (juce::Component& editor, std::function<bool()> isInUse);
    ~OverlayFocus() override;

    /** From the lowest to the highest; hidden ones too. They pass the keyboard on to what they hold. */
    void watch (std::initializer_list<juce::Component*> overlays);

    /** Before the overlays die. */
    void stop();

    /** The keyboard has come to the editor itself: it goes on to what lies on top. */
    void editorGotFocus (juce::Component::FocusChangeType);

    /** The user has opened something, and is to have the keyboard there. */
    void takeFocus();

private:
    struct Level
    {
        /** Null for the content that lies under them all. */
        juce::Component* overlay;
        juce::Component::SafePointer<juce::Component> lastFocus;
    };

    void componentVisibilityChanged (juce::Component&) override;
    void globalFocusChanged (juce::Component*) override;
    void update();
    [[nodiscard]] size_t findTop() const;
    [[nodiscard]] bool holds (const Level&, const juce::Component& focused) const;
    void keep (Level&, juce::Component* focused) const;
    void giveFocusTo (const Level&);

    juce::Component& editor;
    const std::function<bool()> isInUse;
    std::vector<Level> levels { { nullptr, nullptr } };

    /** The highest one at the last look. */
    size_t top = 0;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (OverlayFocus)
};

} // namespace tessarin
