#pragma once

#include <cstdio>

/** Ends the run, so that the fuzzer keeps the input, if a promise does not hold. */
inline void require (bool holds, const char* promise)
{
    if (holds)
        return;

    std::fprintf (stderr, "broken promise: %s\n", promise);
    __builtin_trap();
}
