#pragma once

#include "dsp/simd/Kernels.h"

namespace simd
{
extern const Kernels baselineKernels;

#ifdef ORVO_HAS_AVX2_KERNELS
extern const Kernels avx2Kernels;
#endif
} // namespace simd
