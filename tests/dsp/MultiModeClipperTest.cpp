#include "dsp/MultiModeClipper.h"

#include "support/Signals.h"

#include <gtest/gtest.h>

namespace
{
using signals::toGain;

constexpr auto softI = 1, boost = 4;

/** The section's output for one sample. */
double outputFor (MultiModeClipper& section, float x)
{
    signals::Buffer buffer (1, 1);
    buffer.setSample (0, 0, x);
    signals::processInPlace (section, buffer);
    return static_cast<double> (buffer.getSample (0, 0));
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

TEST (MultiModeClipper, SetLevelsDoesWhatTwoParametersDoChangeCountsIncluded)
{
    MultiModeClipper section, plain;
    juce::Random random (4);

    for (auto step = 0; step < 3000; ++step)
    {
        if (random.nextInt (10) == 0)
            for (auto* each : { &section, &plain })
                each->setMode (step % 5);

        // Few values, so that they often are the present ones.
        const auto threshold = -6.0f * static_cast<float> (random.nextInt (2));
        const auto makeup = static_cast<float> (random.nextInt (2));
        section.setLevels (threshold, makeup);

        for (const auto& [value, index] : { std::pair { threshold, 0 }, { makeup, 2 } })
        {
            plain.setParameter (value, index);
            plain.raiseChangeCount();
        }

        ASSERT_EQ (section.thresholdDb, plain.thresholdDb);
        ASSERT_EQ (section.makeupGain, plain.makeupGain);
        ASSERT_EQ (section.changeCount, plain.changeCount);

        for (auto mode = 0; mode < section.modes.size(); ++mode)
        {
            auto &ours = *section.modes[mode].saturator, &theirs = *plain.modes[mode].saturator;
            ASSERT_EQ (ours.changeCount, theirs.changeCount) << "mode " << mode << ", step " << step;
            ASSERT_EQ (ours.processSample (0.7f), theirs.processSample (0.7f));
        }
    }
}
} // namespace
