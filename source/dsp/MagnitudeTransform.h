#pragma once

#include <memory>

struct fftwf_plan_s;

/** The magnitudes of a real frame's discrete Fourier transform, by FFTW.

    With a plan of its own, since JUCE's way to FFTW works in place, for which FFTW allocates in every run. Objects may
    be made and destroyed on any threads at once; `run` allocates nothing.
*/
class MagnitudeTransform
{
public:
    /** @param newSize  of the frame: a power of two, from 2 */
    explicit MagnitudeTransform (int newSize);

    /** The frame, `size` samples to be written before each `run`. */
    float* getFrame() noexcept { return frame.get(); }

    /** Writes `size` magnitudes, unscaled; the upper half mirrors the lower one. */
    void run (float* magnitudes) noexcept;

private:
    struct Free
    {
        void operator() (float* buffer) const noexcept;
    };

    struct DestroyPlan
    {
        void operator() (fftwf_plan_s* used) const noexcept;
    };

    int size;
    std::unique_ptr<float, Free> frame;

    /** Real and imaginary parts in turn, from zero up to half the sample rate. */
    std::unique_ptr<float, Free> bins;
    std::unique_ptr<fftwf_plan_s, DestroyPlan> plan;
};
