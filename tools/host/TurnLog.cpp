#include "TurnLog.h"

#include <ctime>

thread_local constinit TurnLog* TurnLog::current = nullptr;

TurnLog::TurnLog()
{
    current = this;

    // The first allocation that is to be seen.
    frames.reserve (1024);
    isCounting = allocations > 0;

    start = now().seconds;
}

TurnLog::~TurnLog()
{
    current = nullptr;
}

TurnLog::Moment TurnLog::now() const
{
    timespec time {};
    clock_gettime (CLOCK_THREAD_CPUTIME_ID, &time);
    return { static_cast<double> (time.tv_sec) + 1.0e-9 * static_cast<double> (time.tv_nsec), allocations };
}

double TurnLog::getThreadSeconds() const
{
    return now().seconds - start;
}

void TurnLog::endTurn()
{
    if (current == nullptr || ! current->turn.has_value())
        return;

    const auto begin = *current->turn, end = current->now();
    current->turn.reset();

    if (end.seconds - begin.seconds >= leastFrame)
        current->frames.push_back ({ end.seconds - begin.seconds, end.allocations - begin.allocations });
}

void TurnLog::beginTurn()
{
    if (current != nullptr)
        current->turn = current->now();
}
