#include "core/PluginUnderTest.h"
#include "support/Messages.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

namespace
{
using tessarin::EditHistory;
using Side = EditHistory::Side;

struct History : testing::Test
{
    History()
    {
        history.getMillisecondCounter = [this] { return now; };
    }

    /** As a control of the window does, after whose gesture some time passes. */
    void turn (const juce::String& id, double value, bool isRun = false)
    {
        auto& parameter = plugin.parameter (id);
        parameter.beginChangeGesture();
        plugin.set (id, value);
        parameter.endChangeGesture();

        now += isRun ? 20 : 520;
    }

    /** All values, and the preset's name. */
    expected::Values present()
    {
        auto all = plugin.values();
        all["preset " + plugin.processor.presetManager.getCurrentPreset().name.toStdString()] = 1.0;
        return all;
    }

    TemporaryConfig config;
    const juce::File loud = config.addPreset ("Factory/Loud.tpre", stateText (entry ("in_gain", "6")));
    const juce::File wide = config.addPreset ("Factory/Wide.tpre", stateText (entry ("layout", "2")));
    PluginUnderTest plugin;
    EditHistory& history = plugin.processor.editHistory;
    juce::uint32 now = 1;
};
} // namespace

TEST_F (History, GoesBackAndForthThroughWhatEachSideHasBeen)
{
    // What each side was, from its first state on, and where in that it stands.
    struct Course
    {
        std::vector<expected::Values> states;
        size_t place = 0;

        void add (const expected::Values& state)
        {
            if (state == states[place])
                return;

            states.resize (++place);
            states.push_back (state);
        }
    };

    std::array<Course, 2> sides;
    auto heard = size_t { 0 };
    sides[0].states = { present() };

    std::minstd_rand random (2);
    const auto& rows = expected::parameters();
    std::array<int, 6> numOf {};

    for (size_t i = 0; i < 1500; ++i)
    {
        auto& course = sides[heard];
        const auto deed = random() % 12;

        if (deed < 5)
        {
            // Neighbours differ, so that no two make a run.
            const auto& row = rows[i % rows.size()];
            turn (row.id, row.min + (row.max - row.min) * (static_cast<double> (random() % 11) / 10.0), true);
            course.add (present());
            ++numOf[0];
        }
        else if (deed < 8)
        {
            EXPECT_EQ (history.undo(), course.place > 0);
            course.place -= course.place > 0 ? 1 : 0;
            ++numOf[1];
        }
        else if (deed < 9)
        {
            const auto isLast = course.place + 1 == course.states.size();
            EXPECT_EQ (history.redo(), ! isLast);
            course.place += isLast ? 0 : 1;
            ++numOf[2];
        }
        else if (deed < 10)
        {
            plugin.processor.presetManager.loadPreset (static_cast<int> (random() % 3));
            course.add (present());
            ++numOf[3];
        }
        else if (deed < 11)
        {
            const auto other = 1 - heard;

            if (sides[other].states.empty())
                sides[other].states = { present() };

            history.listenTo (other == 0 ? Side::a : Side::b);
            heard = other;
            ++numOf[4];
        }
        else
        {
            const auto& a = sides[0].states[sides[0].place];

            if (sides[1].states.empty())
                sides[1].states = { a };
            else
                sides[1].add (a);

            history.copyAToB();
            ++numOf[5];
        }

        ASSERT_EQ (present(), sides[heard].states[sides[heard].place]) << "deed " << deed << " of step " << i;
        EXPECT_EQ (history.getHeardSide() == Side::b, heard == 1);
        EXPECT_EQ (history.getUndoName().isNotEmpty(), sides[heard].place > 0);

        // Short courses, which the limits of the history do not reach.
        if (i % 20 == 19)
        {
            plugin.restore (plugin.capture());
            sides[heard] = { { present() }, 0 };
        }
    }

    for (const auto number : numOf)
        EXPECT_GT (number, 50);
}

TEST_F (History, TakesWhatBelongsTogetherForOneStep)
{
    auto& low = plugin.parameter ("crossover_low");
    auto& high = plugin.parameter ("crossover_high");

    // Two gestures that overlap.
    low.beginChangeGesture();
    plugin.set ("crossover_low", 300);
    high.beginChangeGesture();
    plugin.set ("crossover_high", 5000);
    EXPECT_FALSE (history.undo()) << "in the middle of a gesture";
    low.endChangeGesture();
    EXPECT_FALSE (history.undo());
    high.endChangeGesture();

    // A wheel, and then nothing at all.
    for (const auto value : { 1.0, 2.0, 3.0 })
        turn ("in_gain", value, true);

    turn ("threshold_single", plugin.get ("threshold_single"));

    EXPECT_EQ (history.getUndoName(), "Input Gain");
    EXPECT_TRUE (history.undo());
    EXPECT_EQ (plugin.get ("in_gain"), 0.0);
    EXPECT_EQ (history.getUndoName(), "XOver Low");
    EXPECT_TRUE (history.undo());
    EXPECT_EQ (plugin.get ("crossover_low"), 160.0);
    EXPECT_EQ (plugin.get ("crossover_high"), 3500.0);
    EXPECT_FALSE (history.undo());

    for (const auto* name : { "XOver Low", "Input Gain" })
    {
        EXPECT_EQ (history.getRedoName(), name);
        EXPECT_TRUE (history.redo());
    }

    EXPECT_EQ (plugin.get ("in_gain"), 3.0);
    EXPECT_EQ (plugin.get ("crossover_high"), 5000.0);
    EXPECT_EQ (history.getRedoName(), "");

    // A run there and back is no step, after which there is as much to bring again as before.
    EXPECT_TRUE (history.undo());

    for (const auto value : { 1.0, 0.5, 0.0 })
        turn ("in_gain", value, true);

    EXPECT_EQ (history.getUndoName(), "XOver Low");
    EXPECT_TRUE (history.redo());
    EXPECT_EQ (plugin.get ("in_gain"), 3.0);

    // A pause, and a drag that is slow, end a run.
    turn ("in_gain", 4.0);
    turn ("in_gain", 5.0);
    plugin.parameter ("in_gain").beginChangeGesture();
    now += 100;
    turn ("in_gain", 6.0);

    for (const auto value : { 5.0, 4.0, 3.0 })
    {
        EXPECT_TRUE (history.undo());
        EXPECT_EQ (plugin.get ("in_gain"), value);
    }
}

TEST_F (History, LeavesAloneWhatTheHostDoes)
{
    turn ("in_gain", 3.0);
    plugin.set ("threshold_single", -6.0);
    plugin.set ("in_gain", 5.0);
    EXPECT_EQ (history.getUndoName(), "Input Gain");
    EXPECT_TRUE (history.undo());
    EXPECT_EQ (plugin.get ("in_gain"), 0.0);
    EXPECT_EQ (plugin.get ("threshold_single"), -6.0);

    // On any thread, too.
    const auto elsewhere = [&] (auto&& action) { std::thread (action).join(); };
    const auto block = plugin.capture();
    const std::vector<std::function<void()>> deeds {
        [&] { plugin.restore (block); },
        [&] { elsewhere ([&] { plugin.restore (block); }); },
        [&] { plugin.processor.setCurrentProgram (1); },
        [&] { elsewhere ([&] { plugin.processor.setCurrentProgram (2); }); },
    };

    // Beyond the time in which a restore holds off programs.
    plugin.processor.getMillisecondCounter = [time = 1'000'000u]() mutable { return time += 2000; };

    for (const auto& deed : deeds)
    {
        turn ("shape_single", plugin.get ("shape_single") > 0.5 ? 0.1 : 0.9, true);
        EXPECT_EQ (history.getUndoName(), "Clipper Shape");
        deed();
        const auto brought = present();
        EXPECT_EQ (history.getUndoName(), "");
        EXPECT_FALSE (history.undo());
        EXPECT_FALSE (history.redo());
        EXPECT_EQ (present(), brought);
    }

    // What was refused has brought nothing.
    turn ("in_gain", 3.0, true);
    plugin.restore ({ "nonsense", 8 });
    plugin.processor.setCurrentProgram (99);
    EXPECT_TRUE (history.undo());

    // The other side is nobody's but the user's.
    turn ("in_gain", -3.0, true);
    history.listenTo (Side::b);
    turn ("in_gain", -4.0, true);
    plugin.restore (block);
    history.listenTo (Side::a);
    EXPECT_EQ (plugin.get ("in_gain"), -3.0);
    EXPECT_TRUE (history.undo());
}

TEST_F (History, TellsTheHostOfEachStepAndKeepsWhatPresetsBring)
{
    turn ("in_gain", 3.0);
    plugin.processor.presetManager.loadPreset (2);
    plugin.processor.presetManager.loadPreset (2);
    EXPECT_TRUE (history.undo()) << "the second load has changed nothing";
    EXPECT_EQ (plugin.processor.presetManager.getCurrentPreset().name, "Initial Patch");
    EXPECT_EQ (plugin.get ("in_gain"), 3.0);

    struct Recorder final : juce::AudioProcessorParameter::Listener
    {
        void parameterValueChanged (int, float) override { told += "="; }

        void parameterGestureChanged (int, bool starts) override { told += starts ? "(" : ")"; }

        std::string told;
    } recorder;

    plugin.parameter ("in_gain").addListener (&recorder);
    EXPECT_TRUE (history.undo());
    EXPECT_TRUE (history.redo());
    EXPECT_EQ (recorder.told, "(=)(=)");
    plugin.parameter ("in_gain").removeListener (&recorder);

    EXPECT_TRUE (history.redo());
    EXPECT_EQ (plugin.processor.presetManager.getCurrentPreset().name, "Wide");
    EXPECT_EQ (plugin.get ("layout"), 2.0);
    EXPECT_EQ (plugin.get ("in_gain"), 0.0);
}
