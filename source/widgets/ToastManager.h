#pragma once

#include "widgets/Toast.h"

namespace tessarin
{

/** Collects toasts and stacks them over the editor, which they darken.

    Owned by the processor, so that a message can be raised without an editor; it waits here until one adopts
    the manager as a child. Message thread.
*/
class ToastManager final : public juce::Component, public juce::ChangeListener
{
public:
    ToastManager();

    /** Errors get the prefix "ERROR: ". Every toast is also a line of the log. */
    void showToast (const juce::String& text, ToastType type, bool dismissible);

    void showError (const juce::String& text);

    void paint (juce::Graphics&) override;
    void resized() override;

    void focusGained (FocusChangeType) override { passKeyboardOn(); }

    /** With nothing but toasts that stay, the tab key has nowhere to go. */
    bool keyPressed (const juce::KeyPress&) override;

    /** An editor of the same size as the last one sends no resize. */
    void parentHierarchyChanged() override;
    void changeListenerCallback (juce::ChangeBroadcaster* source) override;

    /** Oldest first. */
    juce::OwnedArray<Toast> toasts;

private:
    void layOutIfAdopted();

    /** To the oldest toast that can be dismissed. */
    void passKeyboardOn();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ToastManager)
};

} // namespace tessarin
