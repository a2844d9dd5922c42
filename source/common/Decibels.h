#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

/** Decibel conversions with the floor that the whole product uses: -100 dB stands for silence. */
namespace decibels
{
inline constexpr float floorDb = -100.0f;

/** 10^(0.05 dB) for levels above -100 dB, exactly 0 otherwise. */
[[nodiscard]] inline float toGain (float db) noexcept
{
    return juce::Decibels::decibelsToGain (db, floorDb);
}

/** 20 log10 (gain) where that is above -100, exactly -100 otherwise, also for silence. */
[[nodiscard]] inline float fromGain (float gain) noexcept
{
    return juce::Decibels::gainToDecibels (gain, floorDb);
}
} // namespace decibels
