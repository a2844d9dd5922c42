#pragma once

#include "dsp/simd/CurveKernels.h"
#include "dsp/simd/EnvelopeKernel.h"
#include "dsp/simd/HalfBandKernel.h"
#include "dsp/simd/MeterKernels.h"
#include "dsp/simd/SplitterKernel.h"

namespace
{
/** What the including file's instruction set made of the kernels. */
constexpr simd::KernelTable kernelTable {
    .split = &split,
    .halfBandUp = &halfBandUp,
    .halfBandDown = &halfBandDown,
    .isWithin = &isWithin,
    .weighAndSquare = &weighAndSquare,
    .trackLevels = &trackLevels,
    .hardClip = &hardClip,
    .kneeClip = &kneeClip,
    .powerClip = &powerClip,
    .lift = &lift,
    .envelope = &envelope,
};
} // namespace
