#pragma once

#include "dsp/curves/DrivenSaturator.h"

#include <cmath>

namespace luna
{

/** A sine scaled to the threshold. The argument is not clamped, so large inputs fold. In no mode of the
    product; see docs/decisions/2026-11-22-kept-by-name.md. */
class SinClipper final : public DrivenSaturator<SinClipper>
{
public:
    [[nodiscard]] float shape (float x) const noexcept
    {
        return std::sin (x * inverseThreshold * drive) * threshold;
    }
};

} // namespace luna
