#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace tessarin
{

enum ToastType
{
    /** A failure. */
    toastError = 0,
    toastSuccess = 1,

    /** A note, such as where the manual lies. */
    toastNotice = 2,

    /** A failure that stays until the plug-in closes. */
    toastFatal = 3
};

/** A message bar of one line. It stays until the user dismisses it, with a click on the word or with return, space or
    escape while it has the keyboard; it broadcasts that as a change. */
class Toast final : public juce::Component, public juce::ChangeBroadcaster
{
public:
    Toast (const juce::String& text, ToastType type, bool dismissible);

    void paint (juce::Graphics&) override;
    void mouseDown (const juce::MouseEvent&) override;
    void mouseMove (const juce::MouseEvent&) override;
    bool keyPressed (const juce::KeyPress&) override;

    void focusGained (FocusChangeType) override { repaint(); }

    void focusLost (FocusChangeType) override { repaint(); }

    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

    const juce::String text;
    const ToastType type;
    const bool dismissible;

private:
    [[nodiscard]] bool dismisses (const juce::MouseEvent&) const;
    void drawFocusRing (juce::Graphics&) const;
    [[nodiscard]] int getBackgroundColourId() const;

    /** By a key; it goes when its listeners are told. */
    bool isDismissed = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (Toast)
};

} // namespace tessarin
