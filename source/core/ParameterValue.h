#pragma once

#include "common/Rounding.h"

#include <atomic>

/** Where a parameter's value stands, looked up when that was made. Any thread may read it. */
struct ParameterValue
{
    const std::atomic<float>& raw;
};

struct NumberValue : ParameterValue
{
    [[nodiscard]] float get() const noexcept { return raw.load(); }
};

struct ChoiceValue : ParameterValue
{
    [[nodiscard]] int get() const noexcept { return roundToChoice (raw.load()); }
};

struct SwitchValue : ParameterValue
{
    [[nodiscard]] bool get() const noexcept { return roundToSwitch (raw.load()); }
};
