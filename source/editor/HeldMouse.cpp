#include "HeldMouse.h"

namespace tessarin
{

HeldMouse::~HeldMouse()
{
    using juce::ModifierKeys;
    using juce::MouseInputSource;

    const auto mouse = juce::Desktop::getInstance().getMainMouseSource();
    auto* peer = editor.getPeer();

    if (peer == nullptr || ! mouse.isDragging())
        return;

    // What was pressed in this editor is gone by now; a drag in another window goes on.
    const auto* pressed = mouse.getComponentUnderMouse();

    if (pressed != nullptr && pressed != &editor && ! editor.isParentOf (pressed))
        return;

    constexpr juce::Point<float> outside { -1.0f, -1.0f };
    ModifierKeys::currentModifiers = ModifierKeys::currentModifiers.withoutMouseButtons();
    peer->handleMouseEvent (MouseInputSource::InputSourceType::mouse, outside, ModifierKeys::currentModifiers,
                            MouseInputSource::defaultPressure, MouseInputSource::defaultOrientation,
                            juce::Time::currentTimeMillis());
}

} // namespace tessarin
