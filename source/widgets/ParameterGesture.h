#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

namespace luna
{

/** Sets the parameter in a gesture of its own, as a host records it; none if it has the value already. Message
    thread. */
inline void setInOneGesture (juce::AudioProcessorParameter& parameter, float normalisedValue)
{
    if (juce::approximatelyEqual (normalisedValue, parameter.getValue()))
        return;

    parameter.beginChangeGesture();
    parameter.setValueNotifyingHost (normalisedValue);
    parameter.endChangeGesture();
}

} // namespace luna
