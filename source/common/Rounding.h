#pragma once

#include <cmath>

/** Reads a choice or switch parameter: the nearest whole number, halves to the even one (the default rounding
    mode of the floating-point unit, which neither we nor JUCE change). 0 for what is no finite number. */
[[nodiscard]] inline int roundToChoice (float value) noexcept
{
    return std::isfinite (value) ? static_cast<int> (std::lrint (value)) : 0;
}

[[nodiscard]] inline bool roundToSwitch (float value) noexcept
{
    return roundToChoice (value) != 0;
}
