#include "SessionThread.h"

#include "Failure.h"

namespace
{
double now()
{
    return juce::Time::getMillisecondCounterHiRes() / 1000.0;
}
} // namespace

SessionThread::SessionThread (OpenSession& s, const juce::String& name) : Thread (name), session (s)
{
}

void SessionThread::run()
{
    std::exception_ptr fault;

    try
    {
        work();
    }
    catch (const Interrupted&)
    {
        return;
    }
    catch (...)
    {
        fault = std::current_exception();
    }

    juce::MessageManager::callAsync (
        [&s = session, fault]
        {
            s.guard (
                [&]
                {
                    if (fault != nullptr)
                        std::rethrow_exception (fault);
                });
            s.end();
        });
}

void SessionThread::onMessageThread (const std::function<void()>& action)
{
    struct Call
    {
        std::exception_ptr fault;
        juce::WaitableEvent isDone;
    };

    // The call outlives this function if the message loop ends first, and is then never made.
    const auto call = std::make_shared<Call>();
    juce::MessageManager::callAsync (
        [&action, call]
        {
            try
            {
                action();
            }
            catch (...)
            {
                call->fault = std::current_exception();
            }

            call->isDone.signal();
        });

    while (! call->isDone.wait (20))
        checkForEnd();

    if (call->fault != nullptr)
        std::rethrow_exception (call->fault);
}

void SessionThread::checkForEnd() const
{
    if (threadShouldExit())
        throw Interrupted();
}

void SessionThread::open (float scale)
{
    onMessageThread (
        [&]
        {
            session.setScale (scale);
            session.openEditor();
            paints.begin (session.getWindow().getId());
        });

    if (! waitFor (mostSecondsToAnswer, [this] { return paints.hasPicture(); }))
        throw Failure ("the module paints no whole picture");
}

void SessionThread::close (OpenSession& opened)
{
    onMessageThread ([&] { opened.closeEditor ([this] { closed.signal(); }); });

    if (! waitFor (mostSecondsToAnswer, [this] { return closed.wait (0); }))
        throw Failure ("the window does not close");
}

void SessionThread::hide (bool shouldBeHidden)
{
    onMessageThread (
        [&]
        {
            session.getWindow().setMinimised (shouldBeHidden);

            // A question makes Xlib send what it has kept back.
            juce::ignoreUnused (session.getWindow().isMinimised());
        });

    if (! waitFor (mostSecondsToAnswer, [&] { return paints.isOnScreen() != shouldBeHidden; }))
        throw Failure ("the window manager does not hide or show the window");
}

void SessionThread::cover (bool shouldBeCovered)
{
    /** Everything before the screen's end, and black. */
    struct Cover final : juce::Component
    {
        Cover()
        {
            setOpaque (true);
            setBounds (juce::Desktop::getInstance().getDisplays().getTotalBounds (false));
            addToDesktop (juce::ComponentPeer::windowIsTemporary);
            setVisible (true);
            toFront (false);
        }

        void paint (juce::Graphics& g) override { g.fillAll (juce::Colours::black); }
    };

    onMessageThread (
        [&]
        {
            if (shouldBeCovered)
                blanket = std::make_unique<Cover>();
            else
                blanket.reset();
        });
}

void SessionThread::setSize (EditorSize size)
{
    onMessageThread ([&] { session.getWindow().setEditorSize (size.width, size.height); });

    // Until the window manager has said all that it has to say.
    for (auto wasRestored = true; wasRestored;)
    {
        pause (0.2);
        onMessageThread ([&] { wasRestored = session.getWindow().restoreEditorSize(); });
    }
}

void SessionThread::pause (double seconds)
{
    waitFor (seconds, [] { return false; });
}

bool SessionThread::waitFor (double mostSeconds, const std::function<bool()>& condition)
{
    for (const auto end = now() + mostSeconds; ! condition();)
    {
        const auto left = end - now();

        if (left <= 0.0)
            return false;

        checkForEnd();
        paints.listen (juce::jlimit (1, 20, juce::roundToInt (1000.0 * left)));
    }

    return true;
}
