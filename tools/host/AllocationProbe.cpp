// The program's own allocation functions, which the modules that it loads find before the C library's, and so do their
// `new` and the libraries that they bring. They count, and leave the work to the C library. Threads: any.

#include "TurnLog.h"

#include <cerrno>
#include <cstddef>

#define ORVO_REPLACES_LIBC extern "C" __attribute__ ((visibility ("default")))

extern "C"
{
    void* __libc_malloc (std::size_t);
    void* __libc_calloc (std::size_t, std::size_t);
    void* __libc_realloc (void*, std::size_t);
    void* __libc_memalign (std::size_t, std::size_t);
}

ORVO_REPLACES_LIBC void* malloc (std::size_t size) noexcept
{
    TurnLog::noteAllocation();
    return __libc_malloc (size);
}

ORVO_REPLACES_LIBC void* calloc (std::size_t count, std::size_t size) noexcept
{
    TurnLog::noteAllocation();
    return __libc_calloc (count, size);
}

ORVO_REPLACES_LIBC void* realloc (void* old, std::size_t size) noexcept
{
    TurnLog::noteAllocation();
    return __libc_realloc (old, size);
}

ORVO_REPLACES_LIBC void* aligned_alloc (std::size_t alignment, std::size_t size) noexcept
{
    TurnLog::noteAllocation();
    return __libc_memalign (alignment, size);
}

ORVO_REPLACES_LIBC int posix_memalign (void** result, std::size_t alignment, std::size_t size) noexcept
{
    if (alignment % sizeof (void*) != 0 || alignment == 0 || (alignment & (alignment - 1)) != 0)
        return EINVAL;

    TurnLog::noteAllocation();
    auto* memory = __libc_memalign (alignment, size);

    if (memory == nullptr)
        return ENOMEM;

    *result = memory;
    return 0;
}
