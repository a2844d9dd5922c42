#include "RenderPool.h"

#include <algorithm>
#include <atomic>
#include <chrono>

using namespace std::chrono_literals;

RenderPool::RenderPool (int size, const std::function<std::unique_ptr<PluginHost>()>& makeHost)
{
    for (auto i = 0; i < size; ++i)
        hosts.push_back (makeHost());
}

void RenderPool::run (int count, const Task& task, const std::function<void()>& idle)
{
    std::atomic<int> next { 0 };
    std::vector<std::future<void>> workers;

    const auto work = [&] (PluginHost& host)
    {
        try
        {
            for (auto index = next++; index < count; index = next++)
            {
                task (host, index);
                post (std::packaged_task<void()> ([] {}));
            }
        }
        catch (...)
        {
            next = count;
            throw;
        }
    };

    for (size_t i = 0; i < std::min (hosts.size(), static_cast<size_t> (count)); ++i)
        workers.push_back (std::async (std::launch::async, [&, i] { work (*hosts[i]); }));

    serve (idle, workers);

    for (auto& worker : workers)
        worker.get();
}

void RenderPool::serve (const std::function<void()>& idle, std::vector<std::future<void>>& workers)
{
    const auto hasEnded = [] (const auto& worker)
    { return worker.wait_for (0s) == std::future_status::ready; };

    while (! std::all_of (workers.begin(), workers.end(), hasEnded))
    {
        std::deque<std::packaged_task<void()>> taken;
        {
            std::unique_lock lock (mutex);
            changed.wait_for (lock, 100ms, [&] { return ! waiting.empty(); });
            taken.swap (waiting);
        }

        for (auto& call : taken)
            call();

        idle();
    }
}

void RenderPool::onMessageThread (const std::function<void()>& work)
{
    std::packaged_task<void()> call (work);
    auto done = call.get_future();
    post (std::move (call));
    done.get();
}

void RenderPool::post (std::packaged_task<void()> call)
{
    {
        const std::scoped_lock lock (mutex);
        waiting.push_back (std::move (call));
    }
    changed.notify_one();
}
