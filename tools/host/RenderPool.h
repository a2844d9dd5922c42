#pragma once

#include "PluginHost.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <vector>

/** Instances of the module, each with a thread of its own for audio.

    Made, run and destroyed on the message thread. What a host asks of a module there, parameters, states and the start
    of audio, a task hands over with `onMessageThread`.
*/
class RenderPool
{
public:
    using Task = std::function<void (PluginHost&, int index)>;

    /** `makeHost` is called once for each of `size` instances, at least one. Throws what it throws. */
    RenderPool (int size, const std::function<std::unique_ptr<PluginHost>()>& makeHost);

    /** Calls `task` once for each index from 0 to `count` - 1, in that order, on as many threads as there are
        instances, and `idle` on this one, ten times a second and after each task. Returns when all have ended.
        A task lets nothing escape; the rest is not started once one did, and this throws it. */
    void run (int count, const Task& task, const std::function<void()>& idle);

    /** From a task: calls `work` on the message thread, waits, and throws what it throws. */
    void onMessageThread (const std::function<void()>& work);

private:
    void post (std::packaged_task<void()> call);
    void serve (const std::function<void()>& idle, std::vector<std::future<void>>& workers);

    std::vector<std::unique_ptr<PluginHost>> hosts;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::packaged_task<void()>> waiting;
};
