#pragma once

#include "OpenSession.h"
#include "PaintWatch.h"

#include <functional>
#include <memory>

/** A thread that goes through a session from its beginning to its end, in the order in which its work is written
    down. It asks the message thread for what only that may do, and otherwise leaves it alone. */
class SessionThread : private juce::Thread
{
public:
    SessionThread (OpenSession& session, const juce::String& name);

protected:
    /** On this thread; then the session ends. What is thrown ends it too. */
    virtual void work() = 0;

    // On the message thread. A derived class ends its work in its destructor, since the work is its own.
    void beginWork() { startThread(); }

    void endWork() { stopThread (-1); }

    // On this thread. They throw to leave `work` when it is to end before its time.

    /** Throws what the action throws. */
    void onMessageThread (const std::function<void()>& action);

    /** Hears the X server meanwhile, and so does everything below. Times are in seconds. */
    bool waitFor (double mostSeconds, const std::function<bool()>& condition);
    void pause (double seconds);

    /** To its first whole picture. */
    void open (float scale);
    void close (OpenSession& opened);

    /** Makes an icon of the host's window, or brings it back. */
    void hide (bool shouldBeHidden);

    /** With a window of the program's. */
    void cover (bool shouldBeCovered);
    void setSize (EditorSize size);

    static constexpr auto mostSecondsToAnswer = 10.0;

    OpenSession& session;
    PaintWatch paints;

private:
    /** Made and deleted on the message thread. */
    std::unique_ptr<juce::Component> blanket;

    struct Interrupted
    {
    };

    void run() override;
    void checkForEnd() const;

    juce::WaitableEvent closed;
};
