#pragma once

#include "PluginHost.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

/** A host's window with the module's editor in it, through the VST3 view interface. Message thread. */
class EditorWindow final : public juce::DocumentWindow
{
public:
    /** `scale`: the content scale factor that the view is told. */
    EditorWindow (PluginHost& host, float scale);
    ~EditorWindow() override;

    void closeButtonPressed() override;

    /** In the editor's own pixels, before the scale; through the view's own limits. Throws if it keeps to
        another size. */
    void setEditorSize (int width, int height);

    /** Sets that size once more if it was lost: a window manager that is slow to answer for the window's first size
        brings that back. Returns whether it was. */
    bool restoreEditorSize();

    /** The X11 window's ID. */
    [[nodiscard]] unsigned long getId() const;

    /** Of the editor in the X11 window, in the screen's pixels. */
    [[nodiscard]] juce::Rectangle<int> getViewArea() const;

    /** `area`: of the view's pixels. */
    [[nodiscard]] juce::Image takePicture (juce::Rectangle<int> area) const;

    [[nodiscard]] juce::Image takePicture() const { return takePicture (getViewArea().withZeroOrigin()); }

    std::function<void()> onClose;

private:
    juce::AudioProcessorEditor* editor = nullptr;
    float scale;

    /** In the screen's pixels, from the last `setEditorSize`. */
    juce::Rectangle<int> wantedBounds;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (EditorWindow)
};
