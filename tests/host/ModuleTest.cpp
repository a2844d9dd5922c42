#include "dsp/MultiModeClipper.h"
#include "dsp/simd/KernelTable.h"
#include "HostTestSupport.h"
#include "PluginHost.h"

#include <gtest/gtest.h>

namespace
{
/** What a section of the engine, as it is compiled into this program, makes of a signal with one set of kernels. */
juce::AudioBuffer<float> lifted (juce::AudioBuffer<float> signal, simd::InstructionSet set)
{
    const auto before = simd::selected();
    simd::select (set);

    MultiModeClipper section;
    section.prepare ({ 48000.0, 512, 1 });
    section.setMode (3);
    section.setParameter (-6.0f, 0);
    section.setParameter (0.5f, 1);
    juce::dsp::AudioBlock<float> block (signal);
    section.process (juce::dsp::ProcessContextReplacing<float> (block));

    simd::select (before);
    return signal;
}

TEST (Module, RunsTheKernelsThatAreBestForTheProcessor)
{
    PluginHost host (builtModule);
    for (const auto& [id, text] : { std::pair { "mode_single", "Pressure" },
                                    { "threshold_single", "-6" },
                                    { "shape_single", "50%" },
                                    { "enable_post", "Off" } })
        host.getParameter (id).setFromText (text);

    const auto signal = smoothNoise (1, 512, 0.7f);
    auto block = signal;
    host.setChannels (1);
    host.prepare (48000.0, 512);
    host.process (block);

    const auto hasAvx2 = juce::SystemStats::hasAVX2() && juce::SystemStats::hasFMA3();
    const auto baseline = lifted (signal, simd::InstructionSet::baseline);

    // With FMA the last bits differ, so the audio itself tells who has made it.
    if (hasAvx2)
    {
        EXPECT_TRUE (block == lifted (signal, simd::InstructionSet::avx2));
    }

    EXPECT_EQ (block == baseline, ! hasAvx2);
}
} // namespace
