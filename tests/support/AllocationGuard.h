#pragma once

/** Counts the calls of this thread to the memory allocator, releases included, while it lives.

    Link AllocationGuard.cpp into the test program: it puts itself in front of malloc and its relatives, or,
    in sanitized builds, which do that themselves, hooks into the sanitizer's allocator. `new` and every
    library's containers come through there too. Guards do not nest.
*/
class AllocationGuard
{
public:
    AllocationGuard();
    ~AllocationGuard();

    AllocationGuard (const AllocationGuard&) = delete;
    AllocationGuard& operator= (const AllocationGuard&) = delete;

    /** Calls so far. Read it before an expectation: a failing one allocates its message. */
    [[nodiscard]] int count() const noexcept;
};
