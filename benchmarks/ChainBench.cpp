// The whole plug-in through the call that a host makes, in every layout, oversampling factor and two block
// sizes.

#include "common/ParameterIds.h"
#include "core/OrvoAudioProcessor.h"
#include "Ratios.h"
#include "reference/BlockChain.h"
#include "Rows.h"

#include <memory>

namespace bench
{

namespace
{
void setParameter (OrvoAudioProcessor& processor, const juce::String& id, float value)
{
    auto* parameter = processor.parameters.getParameter (id);
    parameter->setValueNotifyingHost (parameter->convertTo0to1 (value));
}

/** Every section works: threshold and knee where the signal is. "post" stays at its default. */
auto makeChain (int layout, int oversampling, int blockSize, int mode = 1, double rate = hostRate)
{
    auto processor = std::make_shared<OrvoAudioProcessor>();

    for (const auto& section : processor->sections)
    {
        if (section.clipper == &processor->postClipper)
            continue;

        setParameter (*processor, ParameterIds::thresholdPrefix + section.id, -6.0f);
        setParameter (*processor, ParameterIds::shapePrefix + section.id, 0.5f);
        setParameter (*processor, ParameterIds::modePrefix + section.id, static_cast<float> (mode));
    }

    setParameter (*processor, ParameterIds::layout, static_cast<float> (layout));
    setParameter (*processor, ParameterIds::oversampling, static_cast<float> (oversampling));
    processor->setRateAndBufferSizeDetails (rate, blockSize);
    processor->prepareToPlay (rate, blockSize);

    return [processor = std::move (processor), midi = juce::MidiBuffer()] (
               juce::AudioBuffer<float>& buffer) mutable { processor->processBlock (buffer, midi); };
}
} // namespace

void addChainRows()
{
    for (size_t layout = 0; layout < Layout::names.size(); ++layout)
        for (auto exponent = 0; exponent <= Oversampling::largestExponent; ++exponent)
            for (auto blockSize : { 64, defaultBlockSize })
                addRow (
                    "chain/" + juce::String (Layout::names[layout]).removeCharacters (" /").toStdString()
                        + "/" + std::to_string (1 << exponent) + "x/" + std::to_string (blockSize),
                    [=] { return makeChain (static_cast<int> (layout), exponent, blockSize); }, blockSize);
}

Process makeChainProcess (int layout, int exponent, int blockSize, double rate)
{
    using Chain = decltype (makeChain (layout, exponent, blockSize));
    return [chain = std::make_shared<Chain> (makeChain (layout, exponent, blockSize, 1, rate))] (
               juce::AudioBuffer<float>& buffer) { (*chain) (buffer); };
}

void addChainPairs (std::vector<Pair>& pairs)
{
    const auto add = [&] (const std::string& name, const reference::BlockChain::Settings& settings)
    {
        const auto factor = std::to_string (1 << settings.exponent) + "x";

        pairs.push_back (
            { (settings.isMultiBand ? "MultiBand/" : "SingleBand/") + name + "/" + factor,
              [=]
              {
                  const auto chain =
                      std::make_shared<reference::BlockChain> (settings, hostRate, defaultBlockSize);
                  return [chain] (juce::AudioBuffer<float>& buffer) { chain->process (buffer); };
              },
              [=]
              {
                  const auto process = std::make_shared<decltype (makeChain (0, 0, 0))> (makeChain (
                      settings.isMultiBand ? 1 : 0, settings.exponent, defaultBlockSize, settings.mode));
                  return [process] (juce::AudioBuffer<float>& buffer) { (*process) (buffer); };
              } });
    };

    for (auto exponent : { 0, 1, 2, 3, 4 })
        add ("SoftI", { .exponent = exponent });

    for (const auto& mode : MultiModeClipper().modes)
        if (mode.id != 1)
            add (mode.name.removeCharacters (" ").toStdString(), { .mode = mode.id, .exponent = 2 });

    for (auto exponent : { 0, 2, 4 })
        add ("SoftI", { .isMultiBand = true, .exponent = exponent });
}

} // namespace bench
