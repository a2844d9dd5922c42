#include "widgets/ParameterSteps.h"

#include "core/PluginUnderTest.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using juce::KeyPress;
using juce::ModifierKeys;

namespace
{
/** A parameter with its range, and the step of its unit. */
struct Row
{
    const char* id;
    double lowest, highest, step;
    bool isRatio;
};

const std::array rows { Row { "threshold_single", -18, 0, 0.5, false },
                        Row { "in_gain", -18, 18, 0.5, false }, Row { "shape_single", 0, 1, 0.01, false },
                        Row { "crossover_low", 60, 1000, std::pow (2.0, 1.0 / 3.0), true },
                        Row { "crossover_high", 2000, 10000, std::pow (2.0, 1.0 / 3.0), true } };

/** The points of a grid, one after the other, with the range's ends. */
struct Grid
{
    double valueAt (int point) const
    {
        const auto steps = spacing * point;
        return row.isRatio ? origin * std::pow (row.step, steps) : origin + steps * row.step;
    }

    double next (double value, bool isUp) const
    {
        const auto slack = 1.0e-5 * std::max (1.0, std::abs (value));

        for (auto point = isUp ? -4000 : 4000; std::abs (point) <= 4000; point += isUp ? 1 : -1)
            if (isUp ? valueAt (point) > value + slack : valueAt (point) < value - slack)
                return juce::jlimit (row.lowest, row.highest, valueAt (point));

        return value;
    }

    Row row;
    double origin = 0.0, spacing = 0.0;
};

struct Steps : testing::TestWithParam<Row>
{
    TemporaryConfig config;
    PluginUnderTest plugin;
};
} // namespace

TEST_P (Steps, StayOnTheGridOnWhichTheyBegan)
{
    const auto& row = GetParam();
    luna::ParameterSteps steps (plugin.parameter (row.id));
    std::minstd_rand random (7);
    Grid grid { row };
    auto value = plugin.get (row.id);

    for (auto i = 0; i < 1500; ++i)
    {
        if (random() % 40 == 0)
        {
            // By the host, between any two points.
            plugin.set (row.id,
                        row.lowest
                            + (row.highest - row.lowest) * static_cast<double> (random() % 997) / 996.0);
            value = plugin.get (row.id);
            grid.spacing = 0.0;
        }

        const auto isUp = random() % 2 == 0, isPage = random() % 8 == 0, isFine = random() % 16 == 0;
        const auto spacing = isFine ? 0.1 : 1.0;

        if (spacing != grid.spacing)
            grid = { row, value, spacing };

        for (auto step = 0; step < (isPage ? 10 : 1); ++step)
            value = grid.next (value, isUp);

        const auto code = isPage ? (isUp ? KeyPress::pageUpKey : KeyPress::pageDownKey)
                                 : (isUp ? KeyPress::rightKey : KeyPress::leftKey);
        EXPECT_TRUE (steps.keyPressed ({ code, isFine ? ModifierKeys::shiftModifier : 0, 0 }));
        ASSERT_NEAR (plugin.get (row.id), value, 2.0e-5 * std::max (1.0, std::abs (value)))
            << "step " << i << " from " << grid.origin;
        value = plugin.get (row.id);
    }

    for (const auto& [code, end] :
         { std::pair (KeyPress::homeKey, row.lowest), { KeyPress::endKey, row.highest } })
    {
        EXPECT_TRUE (steps.keyPressed (KeyPress (code)));
        EXPECT_EQ (plugin.get (row.id), static_cast<float> (end));
    }

    for (const auto modifier : { ModifierKeys::ctrlModifier, ModifierKeys::altModifier })
        EXPECT_FALSE (steps.keyPressed ({ KeyPress::downKey, modifier, 0 }))
            << "a shortcut of somebody else's";
}

INSTANTIATE_TEST_SUITE_P (Parameters, Steps, testing::ValuesIn (rows),
                          [] (const auto& row) { return std::string (row.param.id); });

TEST (TypedValues, AreNumbersWithOrWithoutTheUnit)
{
    const TemporaryConfig config;
    PluginUnderTest plugin;

    struct Typed
    {
        const char* id;
        const char* text;
        std::optional<double> value;
    };

    const auto minus = "\u2212"
                       "6"; // a minus as in print

    for (const auto& [id, text, value] : std::initializer_list<Typed> { { "in_gain", "3", 3.0 },
                                                                        { "in_gain", " -6,25 dB ", -6.25 },
                                                                        { "in_gain", "+1.5DB", 1.5 },
                                                                        { "in_gain", minus, -6.0 },
                                                                        { "in_gain", "-inf", -18.0 },
                                                                        { "in_gain", "-\u221e", -18.0 },
                                                                        { "in_gain", "1e3", {} },
                                                                        { "in_gain", ".5", 0.5 },
                                                                        { "in_gain", "5.", 5.0 },
                                                                        { "in_gain", "", {} },
                                                                        { "in_gain", "-", {} },
                                                                        { "in_gain", "dB", {} },
                                                                        { "in_gain", "inf", {} },
                                                                        { "in_gain", "nan", {} },
                                                                        { "in_gain", "3 %", {} },
                                                                        { "in_gain", "1.000,5", {} },
                                                                        { "in_gain", "99999999999", 18.0 },
                                                                        { "in_gain", "2k", {} },
                                                                        { "shape_single", "45", 0.45 },
                                                                        { "shape_single", "12,5%", 0.125 },
                                                                        { "shape_single", "-1", 0.0 },
                                                                        { "shape_single", "0.5", 0.005 },
                                                                        { "shape_single", "-inf", {} },
                                                                        { "shape_single", "101%", 1.0 },
                                                                        { "crossover_low", "250", 250.0 },
                                                                        { "crossover_low", "0.4k", 400.0 },
                                                                        { "crossover_low", "0,3 kHz", 300.0 },
                                                                        { "crossover_low", "1 Hz", 60.0 },
                                                                        { "crossover_low", "k", {} },
                                                                        { "crossover_low", "2 kk", {} } })
    {
        SCOPED_TRACE (juce::String (id) + " " + juce::String::fromUTF8 (text));
        plugin.set (id, plugin.get (id));
        const auto before = plugin.get (id);
        EXPECT_EQ (luna::ParameterSteps (plugin.parameter (id)).type (juce::String::fromUTF8 (text)),
                   value.has_value());
        EXPECT_NEAR (plugin.get (id), value.value_or (before), 1.0e-4);
    }
}
