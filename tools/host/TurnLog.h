#pragma once

#include <cstdint>
#include <optional>
#include <vector>

/** What one thread does between its waits for events: the thread that makes this, and also deletes it. A turn goes
    from one return of poll() to the next call. Those calls and the allocations are told by TurnProbe.cpp and
    AllocationProbe.cpp, which stand in the program alone. */
class TurnLog
{
public:
    /** A turn that did something worth the name. */
    struct Frame
    {
        /** Of the thread's own time on a core. */
        double seconds = 0.0;

        std::uint64_t allocations = 0;
    };

    /** In seconds: less is a look at what there is to do. */
    static constexpr auto leastFrame = 0.1e-3;

    TurnLog();
    ~TurnLog();

    TurnLog (const TurnLog&) = delete;
    TurnLog& operator= (const TurnLog&) = delete;

    [[nodiscard]] const std::vector<Frame>& getFrames() const noexcept { return frames; }

    /** What the thread has taken of a core since this was made, in seconds. */
    [[nodiscard]] double getThreadSeconds() const;

    /** Whether this program can see allocations. */
    [[nodiscard]] bool seesAllocations() const noexcept { return isCounting; }

    // For the calls that are watched, on any thread: they concern the calling thread's log, if it has one.
    static void endTurn();
    static void beginTurn();

    static void noteAllocation() noexcept
    {
        if (current != nullptr)
            ++current->allocations;
    }

private:
    struct Moment
    {
        double seconds = 0.0;
        std::uint64_t allocations = 0;
    };

    [[nodiscard]] Moment now() const;

    // Without a constructor, so that an allocation may read it at any time.
    static thread_local constinit TurnLog* current;

    std::vector<Frame> frames;
    std::optional<Moment> turn;
    double start = 0.0;
    std::uint64_t allocations = 0;
    bool isCounting = false;
};
