// The kernels beside their plain forms, each with the same settings.

#include "dsp/HalfBandOversampler.h"
#include "dsp/LevelProcessors.h"
#include "dsp/OversamplerBank.h"
#include "dsp/ThreeBandSplitter.h"
#include "plain/Loudness.h"
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

/** Up and down again without anything in between. */
Process makeJuceOversampler (int exponent)
{
    const auto bank = std::make_shared<OversamplerBank> (makeOversamplerBank (2));
    bank->getUnchecked (exponent)->initProcessing (static_cast<size_t> (defaultBlockSize));

    return [bank, exponent] (juce::AudioBuffer<float>& buffer)
    {
        juce::dsp::AudioBlock<float> block (buffer);
        bank->getUnchecked (exponent)->processSamplesUp (block);
        bank->getUnchecked (exponent)->processSamplesDown (block);
        };
}

Process makeKernelOversampler (int exponent)
{
    const auto oversampler = std::make_shared<HalfBandOversampler> (2u, static_cast<size_t> (exponent));
    constexpr size_t length = 512;
    const auto between = std::make_shared<juce::AudioBuffer<float>> (2, static_cast<int> (length));

    return [=] (juce::AudioBuffer<float>& buffer)
    {
        const juce::dsp::AudioBlock<float> block (buffer);
        const auto partLength = length >> exponent;

        for (size_t start = 0; start < block.getNumSamples(); start += partLength)
        {
            const auto part = block.getSubBlock (start, partLength);
            const juce::dsp::AudioBlock<float> up (*between);
            oversampler->processUp (part, up);
            oversampler->processDown (up, part);
        }
        };
}

Process makePlainLoudness()
{
    kf::LUFSMeter meter;
    meter.prepareToPlay (hostRate, 2, defaultBlockSize, 30);
    return [plain = std::make_shared<plain::Loudness> (meter)] (juce::AudioBuffer<float>& buffer)
    { plain->processBlock (buffer); };
}

Process makeLoudness()
{
    const auto meter = std::make_shared<kf::LUFSMeter>();
    meter->prepareToPlay (hostRate, 2, defaultBlockSize, 30);
    return [meter] (juce::AudioBuffer<float>& buffer) { meter->processBlock (buffer); };
}

Process makeLevels (bool isPlain)
{
    const auto levels = std::make_shared<luna::temp::StereoLevelProcessor>();
    levels->prepare (hostRate);

    if (! isPlain)
        return [levels] (juce::AudioBuffer<float>& buffer)
        { levels->process (juce::dsp::AudioBlock<const float> (buffer)); };

    return [levels] (juce::AudioBuffer<float>& buffer)
    {
        for (auto channel : { 0, 1 })
            for (auto i = 0; i < buffer.getNumSamples(); ++i)
                (channel == 0 ? levels->left : levels->right)
                    .processSample (std::abs (buffer.getSample (channel, i)));
        };
}
} // namespace

void addMeterPairs (std::vector<Pair>& pairs)
{
    pairs.push_back ({ "loudness", makePlainLoudness, makeLoudness });
    pairs.push_back ({ "levels", [] { return makeLevels (true); }, [] { return makeLevels (false); } });
}

void addOversamplerPairs (std::vector<Pair>& pairs)
{
    for (auto exponent = 1; exponent <= 4; ++exponent)
        pairs.push_back ({ "oversampler/" + std::to_string (1 << exponent) + "x",
                           [=] { return makeJuceOversampler (exponent); },
                           [=] { return makeKernelOversampler (exponent); } });
}

void addSplitterPairs (std::vector<Pair>& pairs)
{
    pairs.push_back ({ "splitter", makeSplitter<plain::Splitter>, makeSplitter<ThreeBandSplitter> });
}

} // namespace bench
