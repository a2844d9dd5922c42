#include "dsp/MultiModeClipper.h"

#include "support/AllocationGuard.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
using signals::Buffer;
using signals::toGain;

enum ModeId
{
    hard,
    softI,
    softII,
    pressure,
    boost
};

Buffer processed (luna::AudioEffect& effect, Buffer buffer)
{
    signals::processInPlace (effect, buffer);
    return buffer;
}

/** The section's output for one sample. */
double outputFor (MultiModeClipper& section, float x)
{
    Buffer buffer (1, 1);
    buffer.setSample (0, 0, x);
    return static_cast<double> (processed (section, buffer).getSample (0, 0));
}

TEST (MultiModeClipper, OffersFiveModesAndStartsInHard)
{
    MultiModeClipper section;

    struct
    {
        juce::String name;
        luna::Saturator* saturator;
        juce::String shapeLabel;
        int group;
    } const expected[] {
        { "Hard", &section.hardClipper, "Shape", 0 }, { "Soft I", &section.softClipper, "Shape", 0 },
        { "Soft II", &section.dough, "Shape", 0 },    { "Pressure", &section.inflatorClipper, "Pressure", 2 },
        { "Boost", &section.boost, "Boost", 2 },
    };

    ASSERT_EQ (section.modes.size(), 5);

    for (auto id = 0; id < 5; ++id)
    {
        const auto& mode = section.modes.getReference (id);
        EXPECT_EQ (mode.id, id);
        EXPECT_EQ (mode.flag, juce::roundToInt (std::exp2 (id)));
        EXPECT_EQ (mode.name, expected[id].name);
        EXPECT_EQ (mode.saturator, expected[id].saturator);
        EXPECT_EQ (mode.shapeLabel, expected[id].shapeLabel);
        EXPECT_EQ (mode.group, expected[id].group);
    }

    EXPECT_EQ (section.current, &section.hardClipper);
    EXPECT_EQ (section.currentModeId, hard);
    EXPECT_EQ (outputFor (section, 1.5f), 1.0) << "ready at 0 dB without being prepared";
}

TEST (MultiModeClipper, RunsTheSelectedCurveAndThenTheMakeup)
{
    constexpr auto shape = 0.6f;
    MultiModeClipper section, plain;
    plain.softClipper.setParameter (9.0f * shape, 1);
    plain.inflatorClipper.setParameter (shape, 1);
    plain.boost.setParameter (shape, 1);

    section.prepare ({ 48000.0, 512, 2 });
    section.setParameter (-7.0f, 0);
    section.setParameter (shape, 1);
    section.setParameter (5.0f, 2);
    const auto input = signals::noise (2, 512, 2.0f);

    for (auto id : { boost, softII, hard, pressure, softI })
    {
        section.setMode (id);
        auto& curve = *plain.modes.getReference (id).saturator;
        curve.setParameter (-7.0f, 0);
        curve.prepare ({ 48000.0, 512, 2 });

        auto expected = processed (curve, input);
        expected.applyGain (static_cast<float> (toGain (5.0)));

        EXPECT_LE (signals::largestDifference (processed (section, input), expected), 1.0e-6)
            << "mode " << id;
        EXPECT_EQ (section.currentModeId, id);
        EXPECT_EQ (section.current->envelope, curve.envelope);
    }

    section.setParameter (-100.0f, 2);
    EXPECT_EQ (section.makeupGain, 0.0f) << "the floor of all gains";
}

TEST (MultiModeClipper, LeavesABlockAloneWhileDisabled)
{
    MultiModeClipper section;
    section.prepare ({ 48000.0, 512, 2 });
    section.setParameter (-18.0f, 0);
    section.setParameter (18.0f, 2);
    section.enabled = false;

    const auto input = signals::noise (2, 512, 2.0f);
    EXPECT_EQ (signals::largestDifference (processed (section, input), input), 0.0);
    EXPECT_EQ (section.current->envelope, 0.0f);
}

TEST (MultiModeClipper, KeepsItsSettingsForTheModeThatIsSelectedLater)
{
    MultiModeClipper section;
    section.setParameter (1.0f, 1);
    EXPECT_EQ (outputFor (section, 0.875f), 0.875) << "no effect in Hard";

    section.setMode (softI);
    EXPECT_NEAR (outputFor (section, 1.0f), toGain (-2.25), 1.0e-6) << "a knee of 9 dB";

    section.setMode (boost);
    EXPECT_NEAR (static_cast<double> (section.boost.exponent), 3.0, 1.0e-5);

    section.setParameter (-9.0f, 0);
    EXPECT_EQ (section.hardClipper.threshold, 1.0f) << "not selected";
    section.boost.threshold = 0.1f;
    section.setParameter (0.0f, 77);
    EXPECT_NEAR (static_cast<double> (section.boost.threshold), toGain (-9.0), 1.0e-6)
        << "any index sends all";
}

TEST (MultiModeClipper, TellsOfEachModeChangeAndKeepsItsModeForAnUnknownOne)
{
    MultiModeClipper section;
    std::vector<int> told;
    section.onModeChange = [&] { told.push_back (section.currentModeId); };

    for (auto id : { 3, 99, -1, 3, 0 })
        section.setMode (id);

    EXPECT_EQ (told, (std::vector { 3, 3, 3, 3, 0 }));
}

TEST (MultiModeClipper, TakesSettingsWithoutAllocating)
{
    MultiModeClipper section;
    auto calls = 0;
    {
        const AllocationGuard guard;
        for (auto id : { hard, softI, softII, pressure, boost })
        {
            section.setMode (id);
            for (auto index : { 0, 1, 2 })
                section.setParameter (0.5f, index);
        }
        calls = guard.count();
    }
    EXPECT_EQ (calls, 0);
}

TEST (MultiModeClipper, RaisesTheChangeCountsOfWhatItTouches)
{
    MultiModeClipper section;
    section.setMode (softI);

    const auto counts = [&]
    {
        std::vector<int> values;
        for (const luna::AudioEffect* effect : std::initializer_list<const luna::AudioEffect*> {
                 &section, &section.hardClipper, &section.softClipper, &section.dough,
                 &section.inflatorClipper, &section.boost, &section.foldback, &section.tanhClipper,
                 &section.sinClipper })
            values.push_back (effect->changeCount);
        return values;
    };

    // Hard's threshold at construction; threshold and knee of Soft I when it was selected.
    EXPECT_EQ (counts(), (std::vector { -1, 0, 1, -1, -1, -1, -1, -1, -1 }));

    section.prepare ({ 48000.0, 512, 2 });
    EXPECT_EQ (counts(), (std::vector { 0, 1, 4, 0, 0, 0, -1, -1, -1 }));
}
} // namespace
