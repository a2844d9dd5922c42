#include "dsp/simd/KernelSignals.h"
#include "support/InstructionSets.h"

#include <array>

namespace
{
using simd::InstructionSet;

/** Where the functions of the table lie that the engine calls now. */
auto addressesInUse()
{
    std::array<const void*, sizeof (simd::KernelTable) / sizeof (void*)> addresses;
    static_assert (sizeof (addresses) == sizeof (simd::KernelTable));
    std::memcpy (addresses.data(), &simd::kernels(), sizeof (addresses));
    return addresses;
}

/** A curve with a polynomial, where FMA rounds once and other instructions round twice. */
signals::Buffer lifted()
{
    auto samples = signals::noise (1, 4096);
    simd::kernels().lift ({ 0.5f, 2.4f, 0.7f, { 1.4f, 0.1f, -0.4f, -0.1f } }, samples.getWritePointer (0),
                          4096);
    return samples;
}

TEST (KernelSelection, IsTheBestOfTheProcessorAtLoadAndChangesEveryFunction)
{
    const auto atLoad = addressesInUse();
    const auto setAtLoad = simd::selected();

    if (! processorHasAvx2())
    {
        EXPECT_EQ (setAtLoad, InstructionSet::baseline);
        EXPECT_FALSE (simd::isSupported (InstructionSet::avx2) || simd::select (InstructionSet::avx2));
        EXPECT_EQ (addressesInUse(), atLoad);
        GTEST_SKIP() << "this processor has one set";
    }

    EXPECT_EQ (setAtLoad, InstructionSet::avx2);
    EXPECT_EQ (kernels::supportedSets().size(), 2u) << "or the other tests compare one set with itself";
    const auto fused = lifted();

    const kernels::Selection selection (InstructionSet::baseline);
    EXPECT_EQ (simd::selected(), InstructionSet::baseline);
    const auto baseline = addressesInUse();

    for (size_t i = 0; i < atLoad.size(); ++i)
        EXPECT_NE (baseline[i], atLoad[i]) << "function " << i;

    EXPECT_FALSE (kernels::areSameBits (fused, lifted())) << "its own name, and the others' instructions";
    EXPECT_TRUE (simd::select (InstructionSet::avx2));
    EXPECT_EQ (addressesInUse(), atLoad);
}
} // namespace
