#include "ParameterSteps.h"

#include "widgets/ParameterGesture.h"

#include <cmath>

namespace luna
{

using juce::KeyPress;

ParameterSteps::ParameterSteps (juce::RangedAudioParameter& parameterToSet)
    : parameter (parameterToSet), unit (parameterToSet)
{
}

bool ParameterSteps::keyPressed (const KeyPress& key)
{
    constexpr auto stepsOfPage = 10;
    const auto mods = key.getModifiers();
    const auto isKey = [&key] (int code) { return key.isKeyCode (code); };

    if (mods.isCtrlDown() || mods.isAltDown() || mods.isCommandDown())
        return false;

    if (isKey (KeyPress::upKey) || isKey (KeyPress::rightKey))
        move (1, mods.isShiftDown());
    else if (isKey (KeyPress::downKey) || isKey (KeyPress::leftKey))
        move (-1, mods.isShiftDown());
    else if (isKey (KeyPress::pageUpKey))
        move (stepsOfPage, mods.isShiftDown());
    else if (isKey (KeyPress::pageDownKey))
        move (-stepsOfPage, mods.isShiftDown());
    else if (isKey (KeyPress::homeKey))
        setInOneGesture (parameter, 0.0f);
    else if (isKey (KeyPress::endKey))
        setInOneGesture (parameter, 1.0f);
    else if (isKey (KeyPress::deleteKey))
        reset();
    else
        return false;

    return true;
}

void ParameterSteps::wheelMoved (const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel)
{
    if (event.mods.isAnyMouseButtonDown())
        return;

    const auto way = std::abs (wheel.deltaX) > std::abs (wheel.deltaY) ? -wheel.deltaX : wheel.deltaY;

    if (! juce::exactlyEqual (way, 0.0f))
        move ((way > 0.0f) != wheel.isReversed ? 1 : -1, event.mods.isShiftDown());
}

bool ParameterSteps::type (const juce::String& text)
{
    const auto value = unit.parse (text);

    if (value)
        setInOneGesture (parameter, parameter.convertTo0to1 (*value));

    return value.has_value();
}

void ParameterSteps::reset()
{
    setInOneGesture (parameter, parameter.getDefaultValue());
}

std::optional<juce::String> ParameterSteps::getTypedBy (const KeyPress& key)
{
    const auto mods = key.getModifiers();
    const auto character = key.getTextCharacter();

    if (mods.isCtrlDown() || mods.isAltDown() || mods.isCommandDown())
        return {};

    if (key.isKeyCode (KeyPress::returnKey))
        return juce::String();

    if ((character >= '0' && character <= '9') || character == '-')
        return juce::String::charToString (character);

    return {};
}

juce::String ParameterSteps::getText() const
{
    return parameter.getText (parameter.getValue(), 0);
}

double ParameterSteps::getValue() const
{
    return static_cast<double> (parameter.convertFrom0to1 (parameter.getValue()));
}

void ParameterSteps::move (int steps, bool isFine)
{
    constexpr auto fine = 0.1, nearPoint = 0.001;
    const auto newSpacing = isFine ? fine : 1.0;
    const auto value = getValue();

    if (! juce::exactlyEqual (value, reached) || ! juce::exactlyEqual (newSpacing, spacing))
    {
        origin = value;
        spacing = newSpacing;
    }

    // From an end of the range, the next point on the way counts as one step.
    const auto place = unit.stepsBetween (origin, value) / spacing;
    const auto point = std::round (place);
    const auto from = std::abs (place - point) < nearPoint ? point
                      : steps > 0                          ? std::floor (place)
                                                           : std::ceil (place);

    set (unit.above (origin, spacing * (from + steps)));
}

void ParameterSteps::set (double value)
{
    const auto limited = unit.getRange().clipValue (static_cast<float> (value));
    setInOneGesture (parameter, parameter.convertTo0to1 (limited));
    reached = getValue();
}

} // namespace luna
