// The kernels beside their plain forms, each with the same settings.

#include "dsp/HalfBandOversampler.h"
#include "dsp/LevelProcessors.h"
#include "dsp/MultiModeClipper.h"
#include "dsp/OversamplerBank.h"
#include "dsp/ThreeBandSplitter.h"
#include "plain/Curves.h"
#include "plain/Loudness.h"
#include "plain/Splitter.h"
#include "Ratios.h"

#include <cmath>
#include <memory>
#include <span>

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

template <typename Curve, typename Plain>
Pair makeCurvePair (const char* name, float second, Plain plain)
{
    return { std::string ("curve/") + name,
             [plain]
             {
        return [plain] (juce::AudioBuffer<float>& buffer)
        {
            for (auto channel = 0; channel < buffer.getNumChannels(); ++channel)
                for (auto& x : std::span (buffer.getWritePointer (channel),
                                          static_cast<size_t> (buffer.getNumSamples())))
                    x = plain (x);
            };
            },
             [second]
             {
        const auto curve = std::make_shared<Curve>();
        curve->setParameter (-6.0f, 0);
        curve->setParameter (second, 1);
        return [curve] (juce::AudioBuffer<float>& buffer)
        {
            juce::dsp::AudioBlock<float> block (buffer);
            curve->processBlock (juce::dsp::ProcessContextReplacing<float> (block));
            };
    } };
}

Process makePlainEnvelope()
{
    return [envelope = reference::Envelope (hostRate)] (juce::AudioBuffer<float>& buffer) mutable
    {
        for (auto i = 0; i < buffer.getNumSamples(); ++i)
            envelope (buffer.getReadPointer (0)[i], buffer.getReadPointer (1)[i]);

        benchmark::DoNotOptimize (envelope.level);
        };
}

Process makeEnvelope()
{
    const auto release = reference::Envelope (hostRate).release;

    return [release, level = 0.0f] (juce::AudioBuffer<float>& buffer) mutable
    {
        level =
            simd::kernels().envelope (level, release, buffer.getReadPointer (0), buffer.getReadPointer (1),
                                      static_cast<size_t> (buffer.getNumSamples()));
        benchmark::DoNotOptimize (level);
        };
}
} // namespace

void addCurvePairs (std::vector<Pair>& pairs)
{
    const auto threshold = reference::toGain (-6.0f);
    const auto exponent = 3.0f + 47.0f * std::pow (0.5f, 1.0f / 0.35f);

    pairs.push_back (makeCurvePair<luna::HardClipper> ("Hard", 0.0f, reference::Hard { threshold }));
    pairs.push_back (makeCurvePair<luna::SoftClipper> ("SoftI", 4.5f, reference::SoftOne { -6.0f, 4.5f }));
    pairs.push_back (makeCurvePair<luna::Dough> ("SoftII", 0.0f, reference::SoftTwo { threshold }));
    pairs.push_back (
        makeCurvePair<luna::InflatorClipper> ("Pressure", 0.5f, reference::Pressure { threshold, 0.5f }));
    pairs.push_back (makeCurvePair<luna::Boost> ("Boost", 0.5f, reference::Boost { threshold, exponent }));
    pairs.push_back ({ "envelope", makePlainEnvelope, makeEnvelope });
}

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
