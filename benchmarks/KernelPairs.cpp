// The kernels beside their plain forms, each with the same settings.

#include "dsp/ThreeBandSplitter.h"
#include "plain/Splitter.h"
#include "Ratios.h"

#include <memory>

namespace bench
{

namespace
{
const juce::dsp::ProcessSpec spec { hostRate, static_cast<juce::uint32> (defaultBlockSize), 2 };

template <typename AnySplitter>
Process makeSplitter()
{
    auto splitter = std::make_shared<AnySplitter>();
    splitter->prepare (spec);
    splitter->setFrequencies (160.0f, 3500.0f);

    return [splitter] (juce::AudioBuffer<float>& buffer)
    { splitter->split (juce::dsp::AudioBlock<const float> (buffer)); };
}
} // namespace

void addSplitterPairs (std::vector<Pair>& pairs)
{
    pairs.push_back ({ "splitter", makeSplitter<plain::Splitter>, makeSplitter<ThreeBandSplitter> });
}

} // namespace bench
