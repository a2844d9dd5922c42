#pragma once

#include "dsp/simd/CurveKernels.h"
#include "dsp/simd/EnvelopeKernel.h"
#include "dsp/simd/HalfBandKernel.h"
#include "dsp/simd/MeterKernels.h"
#include "dsp/simd/SplitterKernel.h"

/** Initialises a KernelTable with what the including file's instruction set made of the kernels. */
#define ORVO_KERNEL_TABLE                                                                                    \
    {                                                                                                        \
        .split = &split, .halfBandUp = &halfBandUp, .halfBandDown = &halfBandDown, .isWithin = &isWithin,    \
        .weighAndSquare = &weighAndSquare, .trackLevels = &trackLevels, .hardClip = &hardClip,               \
        .kneeClip = &kneeClip, .powerClip = &powerClip, .lift = &lift, .envelope = &envelope                 \
    }
