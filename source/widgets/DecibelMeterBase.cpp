#include "DecibelMeterBase.h"

#include "common/Decibels.h"

#include <cmath>

namespace luna::temp
{

double DecibelMeterBase::proportionOf (double db) const noexcept
{
    const auto minimum = static_cast<double> (minimumDecibels);

    // NaN takes this way too.
    if (! (db > minimum))
        return 0.0;

    return std::pow (juce::jlimit (0.0, 1.0, (db - minimum) / -minimum), static_cast<double> (skew));
}

double DecibelMeterBase::toDecibels (double gain) noexcept
{
    return juce::Decibels::gainToDecibels (gain, static_cast<double> (decibels::floorDb));
}

} // namespace luna::temp
