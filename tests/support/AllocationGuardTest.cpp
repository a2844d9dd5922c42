#include "AllocationGuard.h"

#include <juce_core/juce_core.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <thread>

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
    juce::Array<float> grows;

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
        { "juce::Array", [&] { grows.add (1.0f); } },
        { "juce::String", [&] { const auto text = "gain_" + juce::String (12); } },
    };

    for (const auto& [name, way] : ways)
        EXPECT_GE (callsDuring (way), 1) << name;
}

TEST (AllocationGuard, CountsNothingElse)
{
    juce::Array<float> reserved;
    reserved.ensureStorageAllocated (8);
    EXPECT_EQ (callsDuring ([&] { reserved.add (1.0f); }), 0) << "room that was there";
    EXPECT_EQ (callsDuring ([] { std::free (nullptr); }), 0) << "nothing to release";

    std::atomic<int> stage = 0;
    std::thread other (
        [&]
        {
        stage.wait (0);
        juce::HeapBlock<float> memory (100);
        stage = 2;
        stage.notify_one();
    });
    EXPECT_EQ (callsDuring (
                   [&]
                   {
        stage = 1;
        stage.notify_one();
        stage.wait (1);
    }),
               0)
        << "another thread's";
    other.join();
}
} // namespace
