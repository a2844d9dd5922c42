// The kernels for processors with AVX2 and FMA. Compiled with those instructions: includes nothing but the
// kernels, which have internal linkage.

#include "dsp/simd/KernelTable.h"

#ifdef ORVO_HAS_AVX2_KERNELS

    #include "dsp/simd/FillKernelTable.h"

extern const simd::KernelTable simd::avx2Kernels = kernelTable;

#endif
