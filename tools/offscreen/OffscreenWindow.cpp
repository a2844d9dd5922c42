#include "OffscreenWindow.h"

#include <utility>

namespace
{
/** A peer whose screen is an image. As on a real one, only what asked to be repainted is. */
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

    void repaint (const juce::Rectangle<int>& area) override { stale.add (area); }

    void performAnyPendingRepaintsNow() override {}

    juce::Image getScreen()
    {
        if (screen.getBounds() != bounds.withZeroOrigin())
        {
            screen = juce::Image (juce::Image::RGB, bounds.getWidth(), bounds.getHeight(), true,
                                  juce::SoftwareImageType());
            stale = screen.getBounds();
        }

        stale.clipTo (screen.getBounds());

        for (const auto& area : stale)
            screen.clear (area, juce::Colours::black);

        juce::LowLevelGraphicsSoftwareRenderer context (screen, {}, std::exchange (stale, {}));
        handlePaint (context);
        return screen.createCopy();
    }

    void setAlpha (float) override {}

    juce::StringArray getAvailableRenderingEngines() override { return { "Off screen" }; }

private:
    void textInputRequired (juce::Point<int>, juce::TextInputTarget&) override {}

    juce::Rectangle<int> bounds;
    juce::Image screen;
    juce::RectangleList<int> stale;
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

    // Outside at first: a move to where the last window's mouse stood would be none.
    sendMouse ({ -1.0f, -1.0f });
}

OffscreenWindow::~OffscreenWindow()
{
    // A window that closes while a button is held sends no release.
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
    return juce::approximatelyEqual (scale, 1.0f) ? static_cast<OffscreenPeer*> (getPeer())->getScreen()
                                                  : createComponentSnapshot (getLocalBounds(), true, scale);
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
