#pragma once

#include "dsp/LoudnessHistogram.h"

namespace kf
{

/** Marks a loudness that does not exist yet. */
inline constexpr float noLoudness = -300.0f;

/** LUFS of a weighted mean square, after ITU-R BS.1770; minus infinity for 0, which fails every gate. */
[[nodiscard]] double toLoudness (double meanSquare);

/** The histogram's key of a loudness in LUFS. */
[[nodiscard]] int toKey (double loudness);

/** Whether the loudest block lies above `gate`, in LUFS. */
[[nodiscard]] bool isAboveGate (const LoudnessHistogram& blocks, double gate);

/** The loudness of the mean square of all blocks from `gate` on, in LUFS; `noLoudness` without any. Only while
    isAboveGate is true, as below. */
[[nodiscard]] float gatedLoudness (const LoudnessHistogram& blocks, double gate);

struct LoudnessRange
{
    float start, end;
};

/** From the 10th to the 95th percentile of the blocks from `gate` on, in LUFS, after EBU Tech 3342. */
[[nodiscard]] LoudnessRange gatedRange (const LoudnessHistogram& blocks, double gate);

} // namespace kf
