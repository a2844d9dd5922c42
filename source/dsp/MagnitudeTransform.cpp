#include "MagnitudeTransform.h"

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <mutex>

namespace
{
/** FFTW's planner may be used by one thread at a time. */
std::mutex plannerLock;
int numPlans = 0;

float* allocate (int numValues)
{
    auto* buffer = fftwf_alloc_real (static_cast<size_t> (numValues));

    if (buffer == nullptr)
        throw std::bad_alloc();

    std::fill_n (buffer, numValues, 0.0f);
    return buffer;
}

fftwf_plan makePlan (int size, float* frame, float* bins)
{
    const std::scoped_lock scope (plannerLock);
    ++numPlans;
    return fftwf_plan_dft_r2c_1d (size, frame, reinterpret_cast<fftwf_complex*> (bins), FFTW_ESTIMATE);
}
} // namespace

MagnitudeTransform::MagnitudeTransform (int newSize)
    : size (newSize),
      frame (allocate (size)),
      bins (allocate (size + 2)),
      plan (makePlan (size, frame.get(), bins.get()))
{
}

void MagnitudeTransform::run (float* magnitudes) noexcept
{
    fftwf_execute (plan.get());

    for (auto i = 0; i <= size / 2; ++i)
    {
        const auto real = bins.get()[2 * i], imaginary = bins.get()[2 * i + 1];
        magnitudes[i] = std::sqrt (real * real + imaginary * imaginary);
    }

    std::reverse_copy (magnitudes + 1, magnitudes + size / 2, magnitudes + size / 2 + 1);
}

void MagnitudeTransform::Free::operator() (float* buffer) const noexcept
{
    fftwf_free (buffer);
}

void MagnitudeTransform::DestroyPlan::operator() (fftwf_plan_s* used) const noexcept
{
    const std::scoped_lock scope (plannerLock);
    fftwf_destroy_plan (used);

    // A host may unload the module after its last instance, and the planner's own memory would stay behind.
    if (--numPlans == 0)
        fftwf_cleanup();
}
