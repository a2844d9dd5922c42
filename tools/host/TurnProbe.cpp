// The program is linked so that JUCE's message loop, when it waits, calls this in place of the C library ("--wrap").
// What the module and X's libraries wait for within a turn belongs to it: they call the C library. Threads: any.

#include "TurnLog.h"

#include <poll.h>

extern "C"
{
    int __real_poll (pollfd*, nfds_t, int);
    int __wrap_poll (pollfd*, nfds_t, int);
}

int __wrap_poll (pollfd* files, nfds_t count, int milliseconds)
{
    TurnLog::endTurn();
    const auto result = __real_poll (files, count, milliseconds);
    TurnLog::beginTurn();
    return result;
}
