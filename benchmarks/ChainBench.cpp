// The whole plug-in through the call that a host makes, in every layout, oversampling factor and two block
// sizes.

#include "common/ParameterIds.h"
#include "core/OrvoAudioProcessor.h"
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
auto makeChain (int layout, int oversampling, int blockSize)
{
    auto processor = std::make_shared<OrvoAudioProcessor>();

    for (const auto& section : processor->sections)
    {
        if (section.clipper == &processor->postClipper)
            continue;

        setParameter (*processor, ParameterIds::thresholdPrefix + section.id, -6.0f);
        setParameter (*processor, ParameterIds::shapePrefix + section.id, 0.5f);
    }

    setParameter (*processor, ParameterIds::layout, static_cast<float> (layout));
    setParameter (*processor, ParameterIds::oversampling, static_cast<float> (oversampling));
    processor->setRateAndBufferSizeDetails (hostRate, blockSize);
    processor->prepareToPlay (hostRate, blockSize);

    return [processor = std::move (processor), midi = juce::MidiBuffer()] (
               juce::AudioBuffer<float>& buffer) mutable { processor->processBlock (buffer, midi); };
}
} // namespace

void addChainRows()
{
    constexpr std::array layouts { "SingleBand", "MultiBand", "MidSide", "LeftRight" };
    constexpr auto numFactors = 5;

    for (size_t layout = 0; layout < layouts.size(); ++layout)
        for (auto exponent = 0; exponent < numFactors; ++exponent)
            for (auto blockSize : { 64, defaultBlockSize })
                addRow (
                    std::string ("chain/") + layouts[layout] + "/" + std::to_string (1 << exponent) + "x/"
                        + std::to_string (blockSize),
                    [=] { return makeChain (static_cast<int> (layout), exponent, blockSize); }, blockSize);
}

} // namespace bench
