// The kernels for every processor.

#include "dsp/simd/FillKernelTable.h"

extern const simd::KernelTable simd::baselineKernels = kernelTable;
