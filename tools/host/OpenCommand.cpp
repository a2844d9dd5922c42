#include "Commands.h"
#include "common/Sections.h"
#include "common/ThemeNames.h"
#include "Failure.h"
#include "OpenSession.h"
#include "PictureFile.h"
#include "PluginSettings.h"
#include "Screen.h"
#include "ScriptControl.h"
#include "TemporaryConfiguration.h"

#include <sys/resource.h>

#include <cstring>
#include <iostream>

namespace
{
bool areEqual (const juce::Image& a, const juce::Image& b)
{
    if (a.getBounds() != b.getBounds())
        return false;

    const juce::Image::BitmapData first (a, juce::Image::BitmapData::readOnly);
    const juce::Image::BitmapData second (b, juce::Image::BitmapData::readOnly);

    for (auto y = 0; y < a.getHeight(); ++y)
        if (std::memcmp (first.getLinePointer (y), second.getLinePointer (y),
                         static_cast<size_t> (a.getWidth() * first.pixelStride))
            != 0)
            return false;

    return true;
}

/** Stops the audio after a while, waits until nothing moves any more, takes the picture and ends. */
class Photographer final : private juce::Timer
{
public:
    Photographer (OpenSession& s, juce::File file, double seconds, bool force)
        : session (s), target (std::move (file)), secondsOfAudio (seconds), mayReplace (force)
    {
        checkPictureTarget (target, mayReplace);
        startTimer (interval);
    }

private:
    // Longer than any pause between two frames of something that still moves.
    static constexpr auto interval = 50;
    static constexpr auto framesAtRest = 10;
    static constexpr auto mostFrames = 600;

    void timerCallback() override
    {
        session.guard ([this] { step(); });
    }

    void step()
    {
        if (session.audio.getSecondsPlayed() < secondsOfAudio)
            return;

        session.audio.stop();
        const auto wasRestored = session.getWindow().restoreEditorSize();
        auto picture = session.getWindow().takePicture();
        equalFrames = ! wasRestored && areEqual (picture, last) ? equalFrames + 1 : 0;
        last = std::move (picture);

        if (++frames > mostFrames)
            throw Failure ("the picture does not come to rest");

        if (equalFrames < framesAtRest)
            return;

        stopTimer();
        savePicture (last, target, mayReplace);
        session.end();
    }

    OpenSession& session;
    juce::File target;
    double secondsOfAudio;
    bool mayReplace;
    juce::Image last;
    int frames = 0, equalFrames = 0;
};

/** What the calling thread has taken of a core since it began. */
double getThreadSeconds()
{
    rusage usage {};
    getrusage (RUSAGE_THREAD, &usage);

    const auto seconds = [] (const timeval& time)
    { return static_cast<double> (time.tv_sec) + 1.0e-6 * static_cast<double> (time.tv_usec); };

    return seconds (usage.ru_utime) + seconds (usage.ru_stime);
}

/** Prints what the message thread takes of a core with each layout shown, and ends. */
class LoadMeter final : private juce::Timer
{
public:
    LoadMeter (OpenSession& s, int secondsPerLayout) : session (s), seconds (secondsPerLayout) { show(); }

private:
    static constexpr auto warmUpSeconds = 1;

    void show()
    {
        session.host.getParameter ("layout").setFromText (juce::String (layout));
        isWarm = false;
        startTimer (1000 * warmUpSeconds);
    }

    void timerCallback() override
    {
        session.guard ([this] { step(); });
    }

    void step()
    {
        const auto cpu = getThreadSeconds();
        const auto now = juce::Time::getMillisecondCounterHiRes() / 1000.0;

        if (! isWarm)
        {
            isWarm = true;
            cpuAtStart = cpu;
            start = now;
            startTimer (1000 * seconds);
            return;
        }

        const auto& size = session.getWindow().getViewArea();
        std::cout << session.host.getParameter ("layout").getText().paddedRight (' ', 14) << size.getWidth()
                  << 'x' << size.getHeight()
                  << "  message thread: " << juce::String (100.0 * (cpu - cpuAtStart) / (now - start), 1)
                  << " % of a core" << std::endl;

        if (++layout == static_cast<int> (Layout::names.size()))
            session.end();
        else
            show();
    }

    OpenSession& session;
    int seconds, layout = 0;
    bool isWarm = false;
    double cpuAtStart = 0.0, start = 0.0;
};

juce::String themeFrom (const Arguments& arguments)
{
    const auto theme = arguments.valueOf ("--theme", {});
    const auto names = toStringArray (embeddedThemeNames);

    if (theme.isNotEmpty() && ! names.contains (theme))
        throw Failure ("--theme is one of " + names.joinIntoString (", ") + ", not \"" + theme + "\"",
                       Failure::wrongUsage);

    return theme;
}

void runOpen (const Arguments& arguments)
{
    const auto scale = static_cast<float> (arguments.numberOf ("--scale", 1.0, 0.5, 4.0));
    const TemporaryConfiguration configuration (themeFrom (arguments));
    PluginHost host (findModule (arguments.valueOf ("--plugin", {})));
    applySettings (host, arguments);

    surviveScreenErrors();
    OpenSession session (host, AudioLoop::loadClip (arguments.valueOf ("--play", {})), scale);
    session.openEditor();

    if (arguments.has ("--size"))
    {
        const auto size = EditorSize::fromText (arguments.valueOf ("--size", {}));
        session.getWindow().setEditorSize (size.width, size.height);
    }

    std::unique_ptr<Photographer> photographer;
    std::unique_ptr<LoadMeter> meter;
    std::unique_ptr<ScriptControl> script;

    if (arguments.has ("--screenshot"))
        photographer = std::make_unique<Photographer> (
            session, fileFromOperand (arguments.valueOf ("--screenshot", {})),
            arguments.numberOf ("--seconds", 0.5, 0.0, 600.0), arguments.has ("--force"));
    else if (arguments.has ("--measure"))
        meter = std::make_unique<LoadMeter> (session, arguments.integerOf ("--measure", 1, 1, 600));
    else if (arguments.has ("--script"))
        script = std::make_unique<ScriptControl> (session);

    session.run();
}
} // namespace

Command openCommand()
{
    const auto names = toStringArray (embeddedThemeNames);
    const auto last = names.size() - 1;
    static const auto themeHelp = (names.joinIntoString (", ", 0, last) + " or " + names[last]).toStdString();

    return { "open",
             "",
             "opens the module's window, with audio running that nobody hears, until it is closed\n"
             "Settings and presets are a fresh installation's in a temporary folder, never the user's.",
             { ORVO_HOST_SETTINGS_OPTIONS,
               { "--size", "WxH", "the editor's size in its own pixels (else its first one)" },
               { "--scale", "F", "the host's scale factor, 0.5 to 4 (else 1)" },
               { "--theme", "NAME", themeHelp.c_str() },
               { "--play", "FILE", "a file of audio to repeat (else a test signal)" },
               { "--screenshot", "FILE.png", "takes a picture when nothing moves any more, and ends" },
               { "--seconds", "S", "audio before the picture, up to 600 (else 0.5)" },
               { "--force", nullptr, "replaces an existing picture" },
               { "--measure", "S", "prints the window's load in each layout, over S seconds, and ends" },
               { "--script", nullptr, "obeys and answers lines on the standard streams, for tests" },
               ORVO_HOST_PLUGIN_OPTION },
             runOpen,
             true };
}
