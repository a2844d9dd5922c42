#include "OpenSession.h"

#include "Failure.h"

#include <csignal>

namespace
{
volatile std::sig_atomic_t interrupted = 0;

/** Ends the session in an orderly way on Ctrl-C, so that no temporary folder stays. */
class InterruptionWatch final : private juce::Timer
{
public:
    explicit InterruptionWatch (OpenSession& s) : session (s)
    {
        for (const auto number : { SIGINT, SIGTERM, SIGHUP })
            std::signal (number, [] (int) { interrupted = 1; });

        startTimer (100);
    }

private:
    void timerCallback() override
    {
        if (interrupted != 0)
            session.end();
    }

    OpenSession& session;
};
} // namespace

EditorSize EditorSize::fromText (const juce::String& text)
{
    const auto width = text.upToFirstOccurrenceOf ("x", false, true);
    const auto height = text.fromFirstOccurrenceOf ("x", false, true);

    for (const auto& number : { width, height })
        if (number.isEmpty() || number.length() > 5 || ! number.containsOnly ("0123456789"))
            throw Failure ("a size is a width and a height, as 1068x800, not \"" + text + "\"",
                           Failure::wrongUsage);

    return { width.getIntValue(), height.getIntValue() };
}

/** Keeps a hidden window until what JUCE has posted to it is handled. Its component for embedded windows posts
    a plain pointer to itself whenever the view's window is resized, and is not to be deleted before. */
class OpenSession::Farewell final : private juce::Timer
{
public:
    Farewell (std::unique_ptr<EditorWindow> w, std::function<void()> callback)
        : window (std::move (w)), onClosed (std::move (callback))
    {
        window->setVisible (false);
        startTimer (20);
    }

    [[nodiscard]] bool isOver() const noexcept { return window == nullptr; }

private:
    void timerCallback() override
    {
        // Each is a turn of the message loop, in which it also hears the X server.
        if (--turns > 0)
            return;

        stopTimer();
        window.reset();
        onClosed();
    }

    std::unique_ptr<EditorWindow> window;
    std::function<void()> onClosed;
    int turns = 5;
};

OpenSession::OpenSession (PluginHost& h, AudioLoop::Clip clip, float factor)
    : host (h), audio (h, std::move (clip)), scale (factor)
{
}

OpenSession::~OpenSession() = default;

void OpenSession::openEditor()
{
    if (window != nullptr || (farewell != nullptr && ! farewell->isOver()))
        throw Failure ("the editor is open");

    window = std::make_unique<EditorWindow> (host, scale);
    window->onClose = [this] { end(); };
}

void OpenSession::closeEditor (std::function<void()> onClosed)
{
    if (window == nullptr)
        throw Failure ("the editor is closed");

    farewell = std::make_unique<Farewell> (std::move (window), std::move (onClosed));
}

EditorWindow& OpenSession::getWindow()
{
    if (window == nullptr)
        throw Failure ("the editor is closed");

    return *window;
}

void OpenSession::run()
{
    const InterruptionWatch watch (*this);
    audio.start();
    juce::MessageManager::getInstance()->runDispatchLoop();
    audio.stop();

    if (fault != nullptr)
        std::rethrow_exception (fault);
}

void OpenSession::end()
{
    juce::MessageManager::getInstance()->stopDispatchLoop();
}

void OpenSession::guard (const std::function<void()>& action)
{
    try
    {
        action();
    }
    catch (...)
    {
        fault = std::current_exception();
        end();
    }
}
