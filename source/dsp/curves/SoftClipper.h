#pragma once

#include "dsp/curves/KneeSaturator.h"
#include "dsp/simd/KernelTable.h"

#include <cmath>
#include <numbers>

namespace luna
{

/** A limiter of the instantaneous level with a quadratic knee: nothing changes below the knee, and above it
    the magnitude is pinned to the threshold. */
class SoftClipper final : public KneeSaturator<KernelSaturator<SoftClipper>>
{
public:
    void updateCoefficients() override
    {
        KneeSaturator::updateCoefficients();

        // The exponentials below are worth a look at whether anything has changed.
        if (juce::exactlyEqual (thresholdDb, curveThresholdDb) && juce::exactlyEqual (kneeDb, curveKneeDb))
            return;

        curveThresholdDb = thresholdDb;
        curveKneeDb = kneeDb;

        // An exponential is a good deal faster than a power.
        constexpr auto dbPerOctave = 6.0205999132796239;
        const auto toGain = [] (float db)
        { return std::exp (static_cast<double> (db) * (std::numbers::ln2 / dbPerOctave)); };
        const auto start = toGain (kneeStartDb);

        curve = { static_cast<float> (start), static_cast<float> (toGain (kneeEndDb)),
                  static_cast<float> (toGain (thresholdDb)), static_cast<float> (1.0 / start),
                  kneeDb > 0.0f ? static_cast<float> (dbPerOctave / (4.0 * static_cast<double> (kneeDb)))
                                : 0.0f };
    }

    void run (float* samples, size_t numSamples) const noexcept
    {
        simd::kernels().kneeClip (curve, samples, numSamples);
    }

private:
    /** The settings that `curve` stands for. */
    float curveThresholdDb = 0.0f;
    float curveKneeDb = 0.0f;
    simd::KneeCurve curve { 1.0f, 1.0f, 1.0f, 1.0f, 0.0f };
};

} // namespace luna
