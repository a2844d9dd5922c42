#pragma once

#include "dsp/curves/DrivenSaturator.h"

#include <cmath>

namespace luna
{

/** A hyperbolic tangent scaled to the threshold. In no mode of the product; see
    docs/decisions/2026-11-22-kept-by-name.md. */
class TanhClipper final : public DrivenSaturator<TanhClipper>
{
public:
    [[nodiscard]] float shape (float x) const noexcept
    {
        return std::tanh (x * inverseThreshold * drive) * threshold;
    }
};

} // namespace luna
