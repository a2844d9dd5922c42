#include "WindowCost.h"

#include "common/ParameterIds.h"
#include "common/Sections.h"
#include "Failure.h"
#include "WindowLoad.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iostream>

namespace
{
constexpr auto longestWarmUp = 1.0, mostSecondsToRest = 15.0;

/** In which nothing is painted. */
constexpr auto secondsOfRest = 1.0;

constexpr EditorSize smallSize { 1068, 800 }, largeSize { 2000, 1500 };

double now()
{
    return juce::Time::getMillisecondCounterHiRes() / 1000.0;
}

/** Of the process, in megabytes. */
double getResidentMemory()
{
    std::ifstream file ("/proc/self/statm");
    auto pages = 0.0;
    file >> pages >> pages;
    return 1.0e-6 * pages * static_cast<double> (sysconf (_SC_PAGESIZE));
}

juce::String column (const juce::String& text)
{
    return text.paddedRight (' ', 30);
}

juce::String cell (double value, int decimals, int width)
{
    return juce::String (value, decimals).paddedLeft (' ', width);
}

juce::String nameOf (int layout)
{
    return Layout::names[static_cast<size_t> (layout)];
}

juce::String sizeOf (OpenSession& session)
{
    const auto area = session.getWindow().getViewArea();
    return juce::String (area.getWidth()) + "x" + juce::String (area.getHeight());
}
} // namespace

WindowCost::WindowCost (OpenSession& s, juce::File m, Plan p)
    : SessionThread (s, "window cost"),
      module (std::move (m)),
      plan (std::move (p)),
      warmUp (std::min (plan.seconds, longestWarmUp)),
      fullestLayout (std::count (plan.layouts.begin(), plan.layouts.end(), Layout::multiBand) > 0
                         ? Layout::multiBand
                         : plan.layouts.front())
{
    beginWork();
}

WindowCost::~WindowCost()
{
    endWork();
}

void WindowCost::work()
{
    judgeOpening();
    std::cout << '\n'
              << column ("with audio") << juce::String ("size").paddedRight (' ', 9) << WindowLoad::titles()
              << std::endl;

    show (fullestLayout);
    judgeBlocks ("no window");

    for (const auto scale : plan.scales)
        judgeLayouts (scale);

    open (1.0f);
    show (fullestLayout);
    judgeBlocks ("beside the window");
    judgeStrain();
    judgeRest();

    std::cout << '\n'
              << column ("audio") << "  blocks  median us  99.9 % us  longest us\n"
              << blockRows.joinIntoString ("\n") << std::endl;
}

/** By the clock on the wall: a thread without privileges is interrupted by whatever else runs. */
void WindowCost::judgeBlocks (const juce::String& state)
{
    const auto leastSeconds = 1.0;
    pause (warmUp);
    juce::ignoreUnused (session.audio.takeBlockTimes());
    pause (std::max (plan.seconds, leastSeconds));

    auto times = session.audio.takeBlockTimes();
    std::sort (times.begin(), times.end());

    if (times.empty())
        throw Failure ("no audio runs");

    const auto at = [&] (double part) {
        return cell (1.0e6 * times[static_cast<size_t> (part * static_cast<double> (times.size() - 1))], 1,
                     11);
    };

    blockRows.add (column (nameOf (fullestLayout) + ", " + state)
                   + juce::String (static_cast<int> (times.size())).paddedLeft (' ', 8) + at (0.5)
                   + at (0.999) + at (1.0));
}

void WindowCost::judgeOpening()
{
    std::cout << column ("opening") << "  call ms  picture ms  memory MB" << std::endl;
    onMessageThread ([this] { session.setScale (plan.scales.front()); });
    printOpening ("first window", session);
    close (session);
    printOpening ("second window", session);
    close (session);

    onMessageThread (
        [this]
        {
            secondHost = std::make_unique<PluginHost> (module);
            secondSession =
                std::make_unique<OpenSession> (*secondHost, AudioLoop::loadClip ({}), plan.scales.front());
        });
    printOpening ("a second instance's window", *secondSession);
    close (*secondSession);
    onMessageThread (
        [this]
        {
            secondSession.reset();
            secondHost.reset();
        });
}

/** The picture is there when each pixel of the view has been painted and the message thread has a hand free again: then
    the turn that painted the last of them is over too. What the window adds to the memory is read a little later. */
void WindowCost::printOpening (const juce::String& title, OpenSession& opened)
{
    const auto memory = getResidentMemory();
    auto start = 0.0, called = 0.0;

    // The module paints when the message loop runs again, so that no paint is missed.
    onMessageThread (
        [&]
        {
            start = now();
            opened.openEditor();
            called = now();
            paints.begin (opened.getWindow().getId());
        });

    const auto hasPicture = waitFor (mostSecondsToAnswer, [this] { return paints.hasPicture(); });
    onMessageThread ([] {});
    const auto end = now();
    pause (warmUp);

    std::cout << column (title) << cell (1000.0 * (called - start), 1, 9)
              << (hasPicture ? cell (1000.0 * (end - start), 1, 12)
                             : juce::String ("never").paddedLeft (' ', 12))
              << cell (getResidentMemory() - memory, 1, 11) << std::endl;
}

void WindowCost::judgeLayouts (float scale)
{
    open (scale);

    if (plan.size.has_value())
        setSize (*plan.size);

    for (const auto layout : plan.layouts)
    {
        show (layout);
        printLoad (layout, "scale " + juce::String (scale));
    }

    close (session);
}

void WindowCost::judgeStrain()
{
    setSize (largeSize);
    printLoad (fullestLayout, "large");

    sweepThresholds (fullestLayout);
    printLoad (fullestLayout, "automated");
    judgeBlocks ("automated, large window");
    stopSweep();

    printLoad (fullestLayout, "resized", "various", [this] (double end) { resizeUntil (end, 0.033); });

    // Each time, it comes to rest.
    printLoad (fullestLayout, "resized slowly", "various", [this] (double end) { resizeUntil (end, 0.6); });
    setSize (smallSize);
}

void WindowCost::judgeRest()
{
    hide (true);
    printLoad (fullestLayout, "hidden");
    hide (false);
    cover (true);
    printLoad (fullestLayout, "covered");
    cover (false);

    onMessageThread ([this] { session.audio.stop(); });
    const auto stop = now();
    const auto isQuiet = [&] { return std::min (paints.getQuietSeconds(), now() - stop) > secondsOfRest; };
    const auto rests = waitFor (std::min (10.0 * plan.seconds, mostSecondsToRest), isQuiet);

    std::cout << '\n' << column ("audio stopped").trimEnd() << std::endl;
    printLoad (fullestLayout, rests ? "at rest" : "never at rest");
    hide (true);
    printLoad (fullestLayout, "hidden");
}

void WindowCost::printLoad (int layout, const juce::String& state)
{
    juce::String size;
    onMessageThread ([&] { size = sizeOf (session); });
    printLoad (layout, state, size, [this] (double end) { pause (end - now()); });
}

void WindowCost::printLoad (int layout, const juce::String& state, const juce::String& size,
                            const std::function<void (double)>& meanwhile)
{
    meanwhile (now() + warmUp);

    auto start = 0.0;
    std::optional<WindowLoad> load;

    paints.listen (0);
    onMessageThread (
        [&]
        {
            log = std::make_unique<TurnLog>();
            start = now();
            juce::ignoreUnused (paints.takePaints());
        });
    meanwhile (now() + plan.seconds);
    onMessageThread (
        [&]
        {
            load.emplace (*log, paints.takePaints(), now() - start);
            log.reset();
        });

    std::cout << column (nameOf (layout) + ", " + state) << size.paddedRight (' ', 9) << load->toString()
              << std::endl;
}

void WindowCost::resizeUntil (double end, double period)
{
    // Up and down in as many seconds, but in few enough steps to be there soon if they are slow.
    const auto steps = period < 0.1 ? 30 : 3;

    for (auto step = 0; now() < end; ++step)
    {
        const auto next = now() + period;
        const auto part = std::abs ((step + steps) % (2 * steps) - steps);
        const auto between = [part, steps] (int from, int to) { return from + (to - from) * part / steps; };

        onMessageThread (
            [&]
            {
                session.getWindow().setEditorSize (between (smallSize.width, largeSize.width),
                                                   between (smallSize.height, largeSize.height));
            });
        pause (next - now());
    }
}

void WindowCost::show (int layout)
{
    onMessageThread ([&] { session.host.getParameter ("layout").setFromText (juce::String (layout)); });
}

void WindowCost::sweepThresholds (int layout)
{
    std::vector<HostedParameter*> thresholds;

    for (const auto& section : sectionTable)
        if (section.isIn (layout))
            thresholds.push_back (&session.host.getParameter (section.idOf (ParameterIds::thresholdPrefix)));

    session.audio.sweep (std::move (thresholds));
}

void WindowCost::stopSweep()
{
    session.audio.sweep ({});
}
