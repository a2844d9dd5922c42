#pragma once

#include "core/ExpectedParameters.h"
#include "reference/ExactChain.h"
#include "support/Signals.h"

#include <gtest/gtest.h>

namespace reference
{
/** Settings for every section, "post" included: modes one apart from section to section, the rest by chance: of three
    times a band is soloed once, and of eight all are muted once. */
inline Values randomValues (int layout, int seed)
{
    juce::Random random (seed);
    const auto between = [&] (double low, double high) { return low + (high - low) * random.nextDouble(); };
    auto values = expected::defaults();
    auto mode = seed;

    for (const auto& [id, name] : expected::sections)
    {
        values["threshold_" + id] = between (-18.0, -0.5);
        values["shape_" + id] = between (0.0, 1.0);
        values["mode_" + id] = mode++ % numModes;
        values["gain_" + id] = between (-12.0, 3.0);
        values["enable_" + id] = random.nextInt (8) > 0 ? 1.0 : 0.0;
        values["mute_" + id] = random.nextInt (2);
        values["link_" + id] = values["threshold_" + id] > -6.0 ? 1.0 : 0.0;
    }

    values["layout"] = layout;
    values["solo_band"] = std::min (3, random.nextInt (9));
    values["crossover_low"] = between (60.0, 1000.0);
    values["crossover_high"] = between (2000.0, 10000.0);
    values["in_gain"] = random.nextInt ({ -6, 10 }) + between (-0.4, 0.4);
    return values;
}

/** Renders noise through a chain or the plug-in around it, whose crossover is cleared, and compares. */
template <typename Chain>
void expectReference (Chain& chain, Values values, int numChannels, double sampleRate, int numSamples,
                      const std::vector<int>& lengths = { 512 })
{
    const auto signal = signals::noise (numChannels, numSamples, 1.2f);
    chain.set (values);
    const auto output = chain.render (signal, lengths);

    // As the chain holds them: in single precision, maybe by way of the host's 0 to 1.
    for (auto& [id, value] : values)
    {
        EXPECT_NEAR (chain.get (id), value, 1.0e-6 * std::max (10.0, value)) << id;
        value = static_cast<double> (chain.get (id));
    }

    // Single precision costs more behind the crossover and the oversampler.
    const auto isFiltered = toChoice (values.at ("layout")) == 1 || values.at ("oversampling") > 0.0;
    EXPECT_LE (signals::largestDifference (output, process (values, sampleRate, signal)),
               isFiltered ? 1.0e-5 : 2.0e-6);
    EXPECT_GT (output.getMagnitude (0, numSamples), 0.0f) << "silence proves nothing";
}
} // namespace reference
