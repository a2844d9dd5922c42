#include "LeftClickButton.h"

namespace luna
{

LeftClickButton::LeftClickButton (const juce::String& name) : juce::Button (name)
{
    // A click leaves no focus ring behind.
    setMouseClickGrabsKeyboardFocus (false);
}

void LeftClickButton::mouseDown (const juce::MouseEvent& event)
{
    if (event.mods.isRightButtonDown())
        rightButtonPressed();
    else if (event.mods.isLeftButtonDown())
        juce::Button::mouseDown (event);
}

void LeftClickButton::mouseDrag (const juce::MouseEvent& event)
{
    if (event.mods.isLeftButtonDown())
        juce::Button::mouseDrag (event);
}

void LeftClickButton::mouseUp (const juce::MouseEvent& event)
{
    if (event.mods.isLeftButtonDown())
        juce::Button::mouseUp (event);
}

} // namespace luna
