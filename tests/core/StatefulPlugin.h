#pragma once

#include "core/PluginUnderTest.h"
#include "support/TemporaryConfig.h"

/** With the host's calls for its state. */
struct StatefulPlugin : PluginUnderTest
{
    juce::MemoryBlock capture()
    {
        juce::MemoryBlock block;
        processor.getStateInformation (block);
        return block;
    }

    void restore (const juce::MemoryBlock& block)
    {
        processor.setStateInformation (block.getData(), static_cast<int> (block.getSize()));
    }

    expected::Values values()
    {
        expected::Values all;

        for (const auto& parameter : expected::parameters())
            all[parameter.id] = get (parameter.id);

        return all;
    }

    /** A value of its own for each parameter, none the default. */
    void moveEverything()
    {
        auto place = 0.05;

        for (const auto& row : expected::parameters())
            set (row.id, row.min + (row.max - row.min) * (place += 0.9 / 70.0));
    }
};
