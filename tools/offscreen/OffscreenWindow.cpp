#include "OffscreenWindow.h"

namespace
{
/** A peer without a screen behind it. */
class OffscreenPeer final : public juce::ComponentPeer
{
public:
    OffscreenPeer (juce::Component& owner, int peerFlags, void* windowForCursors)
        : ComponentPeer (owner, peerFlags), cursorWindow (windowForCursors)
    {
    }

    /** JUCE asks for it to set the mouse cursor of a window. */
    void* getNativeHandle() const override { return cursorWindow; }

    void setVisible (bool) override {}

    void setTitle (const juce::String&) override {}

    void setBounds (const juce::Rectangle<int>& newBounds, bool) override { bounds = newBounds; }

    juce::Rectangle<int> getBounds() const override { return bounds; }

    juce::Point<float> localToGlobal (juce::Point<float> p) override
    {
        return p + bounds.getPosition().toFloat();
    }

    juce::Point<float> globalToLocal (juce::Point<float> p) override
    {
        return p - bounds.getPosition().toFloat();
    }

    using ComponentPeer::globalToLocal;
    using ComponentPeer::localToGlobal;

    void setMinimised (bool) override {}

    bool isMinimised() const override { return false; }

    bool isShowing() const override { return true; }

    void setFullScreen (bool) override {}

    bool isFullScreen() const override { return false; }

    void setIcon (const juce::Image&) override {}

    bool contains (juce::Point<int> p, bool) const override { return bounds.withZeroOrigin().contains (p); }

    OptionalBorderSize getFrameSizeIfPresent() const override
    {
        return OptionalBorderSize { juce::BorderSize<int>() };
    }

    juce::BorderSize<int> getFrameSize() const override { return {}; }

    bool setAlwaysOnTop (bool) override { return true; }

    void toFront (bool) override {}

    void toBehind (ComponentPeer*) override {}

    bool isFocused() const override { return true; }

    void grabFocus() override {}

    void repaint (const juce::Rectangle<int>&) override {}

    void performAnyPendingRepaintsNow() override {}

    void setAlpha (float) override {}

    juce::StringArray getAvailableRenderingEngines() override { return { "Off screen" }; }

private:
    void textInputRequired (juce::Point<int>, juce::TextInputTarget&) override {}

    juce::Rectangle<int> bounds;
    void* const cursorWindow;
};
} // namespace

OffscreenWindow::OffscreenWindow (juce::Component& content)
{
    setOpaque (true);
    setSize (juce::jmax (1, content.getWidth()), juce::jmax (1, content.getHeight()));
    setVisible (true);

    if (juce::Desktop::getInstance().getDisplays().getPrimaryDisplay() != nullptr)
        cursorWindow.addToDesktop (juce::ComponentPeer::windowIsTemporary);

    addToDesktop (0);
    addAndMakeVisible (content);
    content.setTopLeftPosition (0, 0);
    content.sendLookAndFeelChange();

    // Outside at first: a move to where the last window's mouse stood would be none.
    sendMouse ({ -1.0f, -1.0f });
}

OffscreenWindow::~OffscreenWindow()
{
    if (heldButton != 0)
        releaseMouse();

    removeFromDesktop();
}

juce::ComponentPeer* OffscreenWindow::createNewPeer (int styleFlags, void*)
{
    auto* screenPeer = cursorWindow.getPeer();
    return new OffscreenPeer (*this, styleFlags,
                              screenPeer != nullptr ? screenPeer->getNativeHandle() : nullptr);
}

void OffscreenWindow::moveMouse (juce::Component& target, juce::Point<int> position)
{
    sendMouse (getLocalPoint (&target, position).toFloat());
}

void OffscreenWindow::pressMouse (juce::Component& target, juce::Point<int> position, int button)
{
    moveMouse (target, position);
    heldButton = button;
    sendMouse (mousePosition);
}

void OffscreenWindow::dragMouse (juce::Component& target, juce::Point<int> position)
{
    moveMouse (target, position);
}

void OffscreenWindow::releaseMouse()
{
    heldButton = 0;
    sendMouse (mousePosition);
}

void OffscreenWindow::clickMouse (juce::Component& target, juce::Point<int> position, int button)
{
    pressMouse (target, position, button);
    releaseMouse();
}

void OffscreenWindow::typeKey (const juce::KeyPress& key)
{
    getPeer()->handleKeyPress (key);
}

juce::Image OffscreenWindow::render (float scale)
{
    return createComponentSnapshot (getLocalBounds(), true, scale);
}

void OffscreenWindow::sendMouse (juce::Point<float> position)
{
    constexpr auto msBetweenEvents = 1000;

    mousePosition = position;
    eventTime += msBetweenEvents;
    getPeer()->handleMouseEvent (juce::MouseInputSource::InputSourceType::mouse, position,
                                 juce::ModifierKeys (heldButton), juce::MouseInputSource::defaultPressure,
                                 juce::MouseInputSource::defaultOrientation, eventTime);
}
