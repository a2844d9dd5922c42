#include "ParameterSlider.h"

namespace tessarin
{

ParameterSlider::ParameterSlider (juce::RangedAudioParameter* parameter)
{
    if (parameter != nullptr)
        steps.emplace (*parameter);
}

bool ParameterSlider::keyPressed (const juce::KeyPress& key)
{
    if (! steps || ! isEnabled())
        return false;

    if (steps->keyPressed (key))
        return true;

    const auto typed = luna::ParameterSteps::getTypedBy (key);

    if (! typed || ! onTypingWanted)
        return false;

    onTypingWanted (*typed);
    return true;
}

void ParameterSlider::mouseDown (const juce::MouseEvent& event)
{
    if (! isEnabled() || ! event.mods.isLeftButtonDown() || event.mods.isRightButtonDown())
        return;

    pressedValue = getValue();
    place = event.position;
    wasByVelocity = false;
    drag.begin (event);
    CommaValueSlider::mouseDown (event);
}

void ParameterSlider::mouseDrag (const juce::MouseEvent& event)
{
    if (! drag.isOn())
        return;

    constexpr auto fineSpeed = 0.1f;
    const auto isByVelocity = event.mods.testFlags (juce::ModifierKeys::ctrlAltCommandModifiers);

    if (std::exchange (wasByVelocity, isByVelocity) && ! isByVelocity)
        place.y = getPlaceOfValue();

    place += drag.move (event) * (event.mods.isShiftDown() ? fineSpeed : 1.0f);
    CommaValueSlider::mouseDrag (event.withNewPosition (place));

    // The slider asks for JUCE's own way past the screen's edge while Ctrl is held.
    event.source.enableUnboundedMouseMovement (false, true);

    if (event.mouseWasDraggedSinceMouseDown())
        drag.hidePointer();
}

/** Where the mouse would have to be for a plain drag to give the present value. */
float ParameterSlider::getPlaceOfValue()
{
    const auto way = valueToProportionOfLength (getValue()) - valueToProportionOfLength (pressedValue);
    return drag.getStart().y - static_cast<float> (way * getMouseDragSensitivity());
}

void ParameterSlider::mouseUp (const juce::MouseEvent& event)
{
    if (! drag.isOn())
        return;

    CommaValueSlider::mouseUp (event);
    drag.end (event.source, drag.getStart());
}

void ParameterSlider::mouseDoubleClick (const juce::MouseEvent& event)
{
    if (event.mods.isLeftButtonDown())
        CommaValueSlider::mouseDoubleClick (event);
}

void ParameterSlider::mouseWheelMove (const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel)
{
    if (steps && isEnabled())
        steps->wheelMoved (event, wheel);
    else
        Component::mouseWheelMove (event, wheel);
}

void ParameterSlider::lookAndFeelChanged()
{
    CommaValueSlider::lookAndFeelChanged();

    // The value's text is made anew there. It lies over the slider, and has no use for the mouse.
    for (auto* child : getChildren())
        if (auto* box = dynamic_cast<juce::Label*> (child))
            box->setInterceptsMouseClicks (isTextBoxEditable(), isTextBoxEditable());
}

} // namespace tessarin
