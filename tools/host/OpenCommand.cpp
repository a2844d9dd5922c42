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
#include "WindowCost.h"

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

juce::String themeFrom (const Arguments& arguments)
{
    const auto theme = arguments.valueOf ("--theme", {});
    const auto names = toStringArray (embeddedThemeNames);

    if (theme.isNotEmpty() && ! names.contains (theme))
        throw Failure ("--theme is one of " + names.joinIntoString (", ") + ", not \"" + theme + "\"",
                       Failure::wrongUsage);

    return theme;
}

std::optional<EditorSize> sizeFrom (const Arguments& arguments)
{
    if (! arguments.has ("--size"))
        return {};

    return EditorSize::fromText (arguments.valueOf ("--size", {}));
}

/** All layouts and the common scales, or the one that is asked for. */
WindowCost::Plan planFrom (const Arguments& arguments, PluginHost& host, float scale)
{
    WindowCost::Plan plan;
    plan.seconds = arguments.numberOf ("--measure", 1.0, 0.1, 600.0);
    plan.scales = arguments.has ("--scale") ? std::vector { scale } : std::vector { 1.0f, 1.5f, 2.0f };
    plan.size = sizeFrom (arguments);

    const auto names = toStringArray (Layout::names);
    auto isChosen = false;

    for (const auto& setting : arguments.valuesOf ("--set"))
        isChosen = isChosen || setting.startsWith ("layout=");

    for (auto layout = 0; layout < names.size(); ++layout)
        if (! isChosen || host.getParameter ("layout").getText() == names[layout])
            plan.layouts.push_back (layout);

    return plan;
}

void openAndPlay (OpenSession& session, const Arguments& arguments)
{
    session.openEditor();

    if (const auto size = sizeFrom (arguments))
        session.getWindow().setEditorSize (size->width, size->height);

    std::unique_ptr<Photographer> photographer;
    std::unique_ptr<ScriptControl> script;

    if (arguments.has ("--screenshot"))
        photographer = std::make_unique<Photographer> (
            session, fileFromOperand (arguments.valueOf ("--screenshot", {})),
            arguments.numberOf ("--seconds", 0.5, 0.0, 600.0), arguments.has ("--force"));
    else if (arguments.has ("--script"))
        script = std::make_unique<ScriptControl> (session);

    session.run();
}

void runOpen (const Arguments& arguments)
{
    const auto scale = static_cast<float> (arguments.numberOf ("--scale", 1.0, 0.5, 4.0));
    const TemporaryConfiguration configuration (themeFrom (arguments));
    const auto module = findModule (arguments.valueOf ("--plugin", {}));
    PluginHost host (module);
    applySettings (host, arguments);

    surviveScreenErrors();
    OpenSession session (host, AudioLoop::loadClip (arguments.valueOf ("--play", {})), scale);

    if (! arguments.has ("--measure"))
        return openAndPlay (session, arguments);

    const WindowCost cost (session, module, planFrom (arguments, host, scale));
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
             "Settings and presets are a fresh installation's in a temporary folder, never the user's.\n"
             "With --measure, each layout is shown at the scales 1, 1.5 and 2, or what --scale and --set "
             "layout=... say.",
             { presetOption,
               stateOption,
               setOption,
               { "--size", "WxH", "the editor's size in its own pixels (else its first one)" },
               { "--scale", "F", "the host's scale factor, 0.5 to 4 (else 1)" },
               { "--theme", "NAME", themeHelp.c_str() },
               { "--play", "FILE", "a file of audio to repeat (else a test signal)" },
               { "--screenshot", "FILE.png", "takes a picture when nothing moves any more, and ends" },
               { "--seconds", "S", "audio before the picture, up to 600 (else 0.5)" },
               { "--force", nullptr, "replaces an existing picture" },
               { "--measure", "S", "prints what the window costs, S seconds for each row, and ends" },
               { "--script", nullptr, "obeys and answers lines on the standard streams, for tests" },
               pluginOption },
             runOpen,
             true };
}
