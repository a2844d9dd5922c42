#include "../support/InstructionSets.h"
#include "dsp/MultiModeClipper.h"
#include "dsp/simd/KernelTable.h"
#include "HostTestSupport.h"
#include "ModuleFactory.h"
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

/** As the module's own description tells its hosts, by name. */
juce::String textOf (const juce::var& object, const char* name)
{
    return object[name].toString();
}

TEST (Module, IsDescribedInItsBundleAsItDescribesItself)
{
    const auto info = juce::JSON::parse (
        builtModule.getChildFile ("Contents/Resources/moduleinfo.json").loadFileAsString());
    const auto factory = readFactory (builtModule);
    EXPECT_EQ (textOf (info, "Name"), "Orvo");
    EXPECT_EQ (textOf (info, "Version"), "1.0.1");

    const auto about = info["Factory Info"], flags = about["Flags"];
    EXPECT_EQ (textOf (about, "Vendor"), factory.vendor);
    EXPECT_EQ (textOf (about, "URL"), factory.url);
    EXPECT_EQ (textOf (about, "E-Mail"), factory.email);
    EXPECT_EQ (16 * static_cast<int> (flags["Unicode"])
                   + 8 * static_cast<int> (flags["Component Non Discardable"])
                   + static_cast<int> (flags["Classes Discardable"]),
               factory.flags);

    ASSERT_EQ (info["Classes"].size(), static_cast<int> (factory.classes.size()));

    for (auto i = 0; i < info["Classes"].size(); ++i)
    {
        const auto& told = factory.classes[static_cast<size_t> (i)];
        const auto listed = info["Classes"][i];
        juce::StringArray parts;

        for (auto part = 0; part < listed["Sub Categories"].size(); ++part)
            parts.add (listed["Sub Categories"][part].toString());

        EXPECT_EQ (textOf (listed, "CID"), told.id);
        EXPECT_EQ (textOf (listed, "Category"), told.category);
        EXPECT_EQ (parts.joinIntoString ("|"), told.subCategories);
        EXPECT_EQ (textOf (listed, "Name"), told.name);
        EXPECT_EQ (textOf (listed, "Vendor"), told.vendor);
        EXPECT_EQ (textOf (listed, "Version"), told.version);
        EXPECT_EQ (textOf (listed, "SDKVersion"), told.sdkVersion);
        EXPECT_EQ (static_cast<int> (listed["Cardinality"]), told.cardinality);
    }
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

    const auto hasAvx2 = processorHasAvx2();
    const auto baseline = lifted (signal, simd::InstructionSet::baseline);

    // With FMA the last bits differ, so the audio itself tells who has made it.
    if (hasAvx2)
    {
        EXPECT_TRUE (block == lifted (signal, simd::InstructionSet::avx2));
    }

    EXPECT_EQ (block == baseline, ! hasAvx2);
}
} // namespace
