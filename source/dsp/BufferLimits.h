#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

/** Whether every sample of the part lies within plus and minus `limit`; false for what is no number. Audio thread. */
[[nodiscard]] bool isWithin (const juce::AudioBuffer<float>& buffer, float limit, int start,
                             int length) noexcept;

/** The same of all samples. */
[[nodiscard]] bool isWithin (const juce::AudioBuffer<float>& buffer, float limit) noexcept;

/** Whether everything is below 1e-12. The first loud samples settle it. */
[[nodiscard]] bool isSilent (const juce::AudioBuffer<float>& buffer) noexcept;
