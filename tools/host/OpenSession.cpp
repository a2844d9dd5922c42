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

OpenSession::OpenSession (PluginHost& h, AudioLoop::Clip clip, float factor)
    : host (h), audio (h, std::move (clip)), scale (factor)
{
}

void OpenSession::openEditor()
{
    closeEditor();
    window = std::make_unique<EditorWindow> (host, scale);
    window->onClose = [this] { end(); };
}

void OpenSession::closeEditor()
{
    window.reset();
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
