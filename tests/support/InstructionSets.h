#pragma once

#include <juce_core/juce_core.h>

/** Whether the processor has the kernels' second instruction set, by JUCE's own way to ask. On x86 alone: to a program for
    another processor, an emulator may show the one that it runs on. */
[[nodiscard]] inline bool processorHasAvx2()
{
#ifdef JUCE_INTEL
    return juce::SystemStats::hasAVX2() && juce::SystemStats::hasFMA3();
#else
    return false;
#endif
}
