#pragma once

#include <juce_dsp/juce_dsp.h>

/** 600 dB above full scale: no audio comes near it, and it leaves single precision so much room that no
    filter's sum can overflow below it. */
inline constexpr float largestSafeMagnitude = 1.0e30f;

/** Whether every sample is a number from which a filter's state stays finite. False for NaN and infinities.

    A filter that met another sample is reset by its owner, or the damage would last. Audio thread; reads each
    sample once.
*/
[[nodiscard]] bool isSafelyFinite (const juce::dsp::AudioBlock<const float>& block) noexcept;
