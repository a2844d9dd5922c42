#include "EditorWindow.h"

#include "Failure.h"
#include "Screen.h"

namespace
{
/** The view covers the window: what the window painted would be seen by nobody, and count as the view's cost. */
struct NoPaint final : juce::CachedComponentImage
{
    void paint (juce::Graphics&) override {}

    bool invalidateAll() override { return false; }

    bool invalidate (const juce::Rectangle<int>&) override { return false; }

    void releaseResources() override {}
};
} // namespace

EditorWindow::EditorWindow (PluginHost& host, float factor)
    : DocumentWindow (host.getInstance().getName(), juce::Colours::black, DocumentWindow::allButtons, false),
      editor (host.getInstance().createEditorIfNeeded()),
      scale (factor)
{
    if (editor == nullptr)
        throw Failure ("the module has no editor");

    setCachedComponentImage (new NoPaint);

    // The focus belongs to the view's place in the window, which passes it on to the view.
    setWantsKeyboardFocus (false);

    editor->setScaleFactor (scale);
    setUsingNativeTitleBar (true);
    setContentOwned (editor, true);
    setResizable (editor->isResizable(), false);
    addToDesktop();

    // Below the frame that the window manager adds.
    setTopLeftPosition (20, 40);
    setVisible (true);
}

EditorWindow::~EditorWindow()
{
    clearContentComponent();
}

void EditorWindow::closeButtonPressed()
{
    if (onClose)
        onClose();
}

void EditorWindow::setEditorSize (int width, int height)
{
    wantedBounds = (juce::Rectangle<int> (width, height).toFloat() * scale).toNearestInt();
    editor->setSize (wantedBounds.getWidth(), wantedBounds.getHeight());

    if (editor->getLocalBounds() != wantedBounds)
    {
        const auto size = (editor->getLocalBounds().toFloat() / scale).toNearestInt();
        throw Failure ("the editor refuses " + juce::String (width) + "x" + juce::String (height) + " for "
                       + juce::String (size.getWidth()) + "x" + juce::String (size.getHeight()));
    }
}

bool EditorWindow::restoreEditorSize()
{
    if (wantedBounds.isEmpty() || editor->getLocalBounds() == wantedBounds)
        return false;

    editor->setSize (wantedBounds.getWidth(), wantedBounds.getHeight());
    return true;
}

unsigned long EditorWindow::getId() const
{
    return static_cast<unsigned long> (reinterpret_cast<juce::pointer_sized_uint> (getWindowHandle()));
}

juce::Rectangle<int> EditorWindow::getViewArea() const
{
    const auto factor = getPeer()->getPlatformScaleFactor() * static_cast<double> (getDesktopScaleFactor());
    return (getLocalArea (editor, editor->getLocalBounds()).toDouble() * factor).toNearestInt();
}

juce::Image EditorWindow::takePicture (juce::Rectangle<int> area) const
{
    return takeScreenPicture (getId(), area + getViewArea().getPosition());
}
