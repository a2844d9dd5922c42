// The kernels for processors with AVX2 and FMA. Compiled with those instructions: includes nothing but the
// kernels, which have internal linkage.

#include "dsp/simd/KernelTables.h"

#ifdef ORVO_HAS_AVX2_KERNELS

    #include "dsp/simd/KernelSet.h"

extern const simd::Kernels simd::avx2Kernels = ORVO_KERNEL_SET;

#endif
