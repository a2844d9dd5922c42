#pragma once

#include "dsp/MultiModeClipper.h"
#include "reference/Curves.h"

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

namespace reference
{
/** A curve with its settings, over samples in place. */
template <typename Number>
using Form = std::function<void (std::span<Number>)>;

/** One of the product's curves, and its formula in single and in double precision. */
struct Curve
{
    const char* name;

    /** Its number among a section's modes; -1 if no mode selects it. */
    int mode;

    /** The greatest value of the second control. */
    float most;

    std::unique_ptr<luna::Saturator> (*make) (float thresholdDb, float second);
    Form<float> (*plain) (float thresholdDb, float second);
    Form<double> (*exact) (double thresholdDb, double second);
};

template <template <typename> class Formula, typename Number>
Form<Number> makeForm (Number thresholdDb, Number second)
{
    return [formula = Formula<Number> (thresholdDb, second)] (std::span<Number> samples)
    {
        for (auto& x : samples)
            x = formula (x);
    };
}

template <typename Saturator>
std::unique_ptr<luna::Saturator> makeSaturator (float thresholdDb, float second)
{
    auto saturator = std::make_unique<Saturator>();
    saturator->setParameter (second, 1);
    saturator->setParameter (thresholdDb, 0);
    return saturator;
}

template <typename Saturator, template <typename> class Formula>
constexpr Curve describe (const char* name, int mode, float most = 1.0f)
{
    return {
        name, mode, most, makeSaturator<Saturator>, makeForm<Formula, float>, makeForm<Formula, double>
    };
}

inline constexpr std::array curves {
    describe<luna::HardClipper, Hard> ("Hard", 0),  describe<luna::SoftClipper, SoftOne> ("SoftI", 1, 9.0f),
    describe<luna::Dough, SoftTwo> ("SoftII", 2),   describe<luna::InflatorClipper, Pressure> ("Pressure", 3),
    describe<luna::Boost, Boost> ("Boost", 4),      describe<luna::Foldback, Foldback> ("Foldback", -1, 9.0f),
    describe<luna::TanhClipper, Tanh> ("Tanh", -1), describe<luna::SinClipper, Sine> ("Sine", -1),
};

inline constexpr auto numModes =
    static_cast<int> (std::ranges::count_if (curves, [] (const Curve& curve) { return curve.mode >= 0; }));

/** Throws if there is none: a new mode needs its row, and is compared with no other curve. */
inline const Curve& curveOfMode (int mode)
{
    const auto row = std::ranges::find (curves, mode, &Curve::mode);

    if (mode < 0 || row == curves.end())
        throw std::out_of_range ("no plain form of mode " + std::to_string (mode));

    return *row;
}
} // namespace reference
