#include "AllocationGuard.h"

#include "Sanitizers.h"

#include <juce_core/juce_core.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

namespace
{
int callsDuring (const std::function<void()>& work)
{
    const AllocationGuard guard;
    work();
    return guard.count();
}

TEST (AllocationGuard, CatchesEveryWayToTheAllocator)
{
    void* volatile pointer = nullptr; // volatile, so that no pair of calls is optimised away
    void* aligned = nullptr;

    const std::pair<const char*, std::function<void()>> ways[] {
        { "new", [&] { pointer = ::operator new (16); } },
        { "delete", [&] { ::operator delete (pointer); } },
        { "aligned new", [&] { pointer = ::operator new (64, std::align_val_t (64)); } },
        { "aligned delete", [&] { ::operator delete (pointer, std::align_val_t (64)); } },
        { "malloc", [&] { pointer = std::malloc (16); } },
        { "realloc", [&] { pointer = std::realloc (pointer, 4096); } },
        { "free", [&] { std::free (pointer); } },
        { "calloc", [&] { pointer = std::calloc (4, 4); } },
        { "free of calloc", [&] { std::free (pointer); } },
        { "posix_memalign", [&] { EXPECT_EQ (posix_memalign (&aligned, 64, 256), 0); } },
        { "free of posix_memalign", [&] { std::free (aligned); } },
        { "aligned_alloc", [&] { pointer = std::aligned_alloc (64, 256); } },
        { "free of aligned_alloc", [&] { std::free (pointer); } },
    };

    // The thread sanitizer does not tell of these two.
    const juce::StringArray unheard { "posix_memalign", "aligned_alloc" };

    for (const auto& [name, way] : ways)
        EXPECT_GE (callsDuring (way), isThreadSanitized && unheard.contains (name) ? 0 : 1) << name;
}
} // namespace
