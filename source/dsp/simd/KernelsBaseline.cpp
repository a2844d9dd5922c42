// The kernels for every processor.

#include "dsp/simd/KernelSet.h"
#include "dsp/simd/KernelTables.h"

extern const simd::Kernels simd::baselineKernels = ORVO_KERNEL_SET;
