#include "KernelTable.h"

namespace simd
{

namespace
{
// Constant-initialised, so that it is good even before the line below has run.
const KernelTable* current = &baselineKernels;
auto currentSet = InstructionSet::baseline;

[[maybe_unused]] const bool bestIsSelected = select (InstructionSet::avx2);
} // namespace

const KernelTable& kernels() noexcept
{
    return *current;
}

bool isSupported (InstructionSet set) noexcept
{
#ifdef ORVO_HAS_AVX2_KERNELS
    __builtin_cpu_init();

    if (set == InstructionSet::avx2)
        return __builtin_cpu_supports ("avx2") && __builtin_cpu_supports ("fma");
#endif

    return set == InstructionSet::baseline;
}

bool select (InstructionSet set) noexcept
{
    if (! isSupported (set))
        return false;

#ifdef ORVO_HAS_AVX2_KERNELS
    current = set == InstructionSet::avx2 ? &avx2Kernels : &baselineKernels;
#endif

    currentSet = set;
    return true;
}

InstructionSet selected() noexcept
{
    return currentSet;
}

} // namespace simd
