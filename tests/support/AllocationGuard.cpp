#include "AllocationGuard.h"

#include <cerrno>
#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    #define ORVO_SANITIZER_OWNS_MALLOC 1
#elif defined(__has_feature)
    #if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
        #define ORVO_SANITIZER_OWNS_MALLOC 1
    #endif
#endif

#ifndef ORVO_SANITIZER_OWNS_MALLOC
    #define ORVO_SANITIZER_OWNS_MALLOC 0
#endif

namespace
{
// Plain integers in static thread storage: reading them never allocates.
thread_local bool isArmed = false;
thread_local int numCalls = 0;

void noteCall() noexcept
{
    if (isArmed)
        ++numCalls;
}
} // namespace

#if ORVO_SANITIZER_OWNS_MALLOC

extern "C" int __sanitizer_install_malloc_and_free_hooks (void (*mallocHook) (const volatile void*,
                                                                              std::size_t),
                                                          void (*freeHook) (const volatile void*));

namespace
{
void noteAllocation (const volatile void*, std::size_t)
{
    noteCall();
}

void noteRelease (const volatile void* pointer)
{
    if (pointer != nullptr)
        noteCall();
}

[[maybe_unused]] const auto hooksAreInstalled =
    __sanitizer_install_malloc_and_free_hooks (noteAllocation, noteRelease);
} // namespace

#else

    #define ORVO_REPLACES_LIBC extern "C" __attribute__ ((visibility ("default")))

extern "C"
{
    void* __libc_malloc (std::size_t);
    void* __libc_calloc (std::size_t, std::size_t);
    void* __libc_realloc (void*, std::size_t);
    void* __libc_memalign (std::size_t, std::size_t);
    void __libc_free (void*);
}

ORVO_REPLACES_LIBC void* malloc (std::size_t size) noexcept
{
    noteCall();
    return __libc_malloc (size);
}

ORVO_REPLACES_LIBC void* calloc (std::size_t count, std::size_t size) noexcept
{
    noteCall();
    return __libc_calloc (count, size);
}

ORVO_REPLACES_LIBC void* realloc (void* pointer, std::size_t size) noexcept
{
    noteCall();
    return __libc_realloc (pointer, size);
}

ORVO_REPLACES_LIBC void* memalign (std::size_t alignment, std::size_t size) noexcept
{
    noteCall();
    return __libc_memalign (alignment, size);
}

ORVO_REPLACES_LIBC void* aligned_alloc (std::size_t alignment, std::size_t size) noexcept
{
    noteCall();
    return __libc_memalign (alignment, size);
}

ORVO_REPLACES_LIBC int posix_memalign (void** result, std::size_t alignment, std::size_t size) noexcept
{
    noteCall();

    if (alignment % sizeof (void*) != 0 || (alignment & (alignment - 1)) != 0 || alignment == 0)
        return EINVAL;

    auto* pointer = __libc_memalign (alignment, size);

    if (pointer == nullptr)
        return ENOMEM;

    *result = pointer;
    return 0;
}

ORVO_REPLACES_LIBC void free (void* pointer) noexcept
{
    if (pointer != nullptr)
        noteCall();

    __libc_free (pointer);
}

#endif

AllocationGuard::AllocationGuard()
{
    numCalls = 0;
    isArmed = true;
}

AllocationGuard::~AllocationGuard()
{
    isArmed = false;
}

int AllocationGuard::count() const noexcept
{
    return numCalls;
}
