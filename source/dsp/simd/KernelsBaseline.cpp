// The kernels for every processor.

#include "dsp/simd/KernelTables.h"
#include "dsp/simd/SplitterKernel.h"

extern const simd::Kernels simd::baselineKernels { .split = &split };
