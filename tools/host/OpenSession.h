#pragma once

#include "AudioLoop.h"
#include "EditorWindow.h"

#include <exception>
#include <functional>
#include <optional>

struct EditorSize
{
    int width = 0, height = 0;

    /** Throws unless it is two numbers with an "x" between. */
    [[nodiscard]] static EditorSize fromText (const juce::String& text);
};

/** The loaded module with its editor open and audio running, and the message loop around it. */
class OpenSession
{
public:
    OpenSession (PluginHost& host, AudioLoop::Clip clip, float scale);
    ~OpenSession();

    /** For the next time that the editor is opened. */
    void setScale (float newScale) noexcept { scale = newScale; }

    /** Throws while one is open, or not yet gone. */
    void openEditor();

    /** Hides it at once and calls `onClosed` when it is gone. */
    void closeEditor (std::function<void()> onClosed);

    /** Throws while it is closed. */
    [[nodiscard]] EditorWindow& getWindow();

    /** Runs messages until `end`, a closed window or an interruption; throws what an action threw. */
    void run();
    void end();

    /** Calls `action`; what it throws ends the session. For callbacks, out of which nothing may be thrown. */
    void guard (const std::function<void()>& action);

    PluginHost& host;
    AudioLoop audio;

private:
    class Farewell;

    float scale;
    std::unique_ptr<EditorWindow> window;
    std::unique_ptr<Farewell> farewell;
    std::exception_ptr fault;

    JUCE_DECLARE_NON_COPYABLE (OpenSession)
};
