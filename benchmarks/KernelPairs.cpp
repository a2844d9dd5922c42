// The kernels beside their plain forms, each with the same settings.

#include "dsp/HalfBandOversampler.h"
#include "dsp/JuceOversamplers.h"
#include "dsp/LevelProcessors.h"
#include "dsp/ThreeBandSplitter.h"
#include "Ratios.h"
#include "reference/CurveTable.h"
#include "reference/Loudness.h"
#include "reference/Splitter.h"

#include <cmath>
#include <memory>
#include <numeric>

namespace bench
{

namespace
{
const juce::dsp::ProcessSpec spec { hostRate, static_cast<juce::uint32> (defaultBlockSize), 2 };

template <typename AnySplitter>
Form makeSplitter()
{
    auto splitter = std::make_shared<AnySplitter>();
    splitter->prepare (spec);
    splitter->setFrequencies (160.0f, 3500.0f);

    return { [splitter] (juce::AudioBuffer<float>& buffer)
             { splitter->split (juce::dsp::AudioBlock<const float> (buffer)); },
             [splitter]
             {
                 auto energy = 0.0;
                 for (const auto* band : { &splitter->lowBlock, &splitter->midBlock, &splitter->highBlock })
                     energy +=
                         std::pow (static_cast<double> (band->getSample (1, defaultBlockSize - 1)), 2.0);
                 return energy;
             } };
}

/** Up and down again without anything in between. */
Process makeJuceOversampler (int exponent)
{
    const auto bank = std::make_shared<JuceOversamplers> (makeJuceOversamplers (2));
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

/** All bins, the open one included. */
double sumOf (const std::vector<std::vector<double>>& bins)
{
    auto sum = 0.0;
    for (const auto& ring : bins)
        sum = std::accumulate (ring.begin(), ring.end(), sum);
    return sum;
}

Form makePlainLoudness()
{
    kf::LUFSMeter meter;
    meter.prepareToPlay (hostRate, 2, defaultBlockSize, 30);
    const auto plain = std::make_shared<reference::Loudness> (meter);
    return { [plain] (juce::AudioBuffer<float>& buffer) { plain->processBlock (buffer); },
             [plain] { return sumOf (plain->bins); } };
}

Form makeLoudness()
{
    const auto meter = std::make_shared<kf::LUFSMeter>();
    meter->prepareToPlay (hostRate, 2, defaultBlockSize, 30);
    return { [meter] (juce::AudioBuffer<float>& buffer) { meter->processBlock (buffer); },
             [meter] { return sumOf (meter->bins); } };
}

Form makeLevels (bool isPlain)
{
    const auto levels = std::make_shared<luna::temp::StereoLevelProcessor>();
    levels->prepare (hostRate);

    const auto reading = [levels]
    {
        const auto left = levels->left.getData(), right = levels->right.getData();
        return left.rms + left.heldPeak + right.rms + right.heldPeak;
    };

    const auto kernel = [levels] (juce::AudioBuffer<float>& buffer)
    { levels->process (juce::dsp::AudioBlock<const float> (buffer)); };

    const auto plain = [levels] (juce::AudioBuffer<float>& buffer)
    {
        for (auto channel : { 0, 1 })
            for (auto i = 0; i < buffer.getNumSamples(); ++i)
                (channel == 0 ? levels->left : levels->right)
                    .processSample (std::abs (buffer.getSample (channel, i)));
    };

    return isPlain ? Form { plain, reading } : Form { kernel, reading };
}

Pair makeCurvePair (const reference::Curve& curve)
{
    const auto makePlain = [&curve]
    {
        return [form = curve.plain (-6.0f, 0.5f * curve.most)] (juce::AudioBuffer<float>& buffer)
        {
            for (auto channel = 0; channel < buffer.getNumChannels(); ++channel)
                form ({ buffer.getWritePointer (channel), static_cast<size_t> (buffer.getNumSamples()) });
        };
    };

    const auto makeKernel = [&curve]
    {
        const auto saturator = std::shared_ptr (curve.make (-6.0f, 0.5f * curve.most));

        return [saturator] (juce::AudioBuffer<float>& buffer)
        {
            juce::dsp::AudioBlock<float> block (buffer);
            saturator->processBlock (juce::dsp::ProcessContextReplacing<float> (block));
        };
    };

    return { std::string ("curve/") + curve.name, makePlain, makeKernel };
}

Form makePlainEnvelope()
{
    const auto shared = std::make_shared<reference::Envelope> (hostRate);

    return { [shared, envelope = *shared] (juce::AudioBuffer<float>& buffer) mutable
             {
                 for (auto i = 0; i < buffer.getNumSamples(); ++i)
                     envelope (buffer.getReadPointer (0)[i], buffer.getReadPointer (1)[i]);

                 shared->level = envelope.level;
             },
             [shared] { return static_cast<double> (shared->level); } };
}

Form makeEnvelope()
{
    const auto release = reference::Envelope (hostRate).release;
    const auto level = std::make_shared<float> (0.0f);

    return { [release, level] (juce::AudioBuffer<float>& buffer)
             {
                 *level = simd::kernels().envelope (*level, release, buffer.getReadPointer (0),
                                                    buffer.getReadPointer (1),
                                                    static_cast<size_t> (buffer.getNumSamples()));
             },
             [level] { return static_cast<double> (*level); } };
}
} // namespace

void addCurvePairs (std::vector<Pair>& pairs)
{
    for (const auto& curve : reference::curves)
        pairs.push_back (makeCurvePair (curve));

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
    pairs.push_back ({ "splitter", makeSplitter<reference::Splitter>, makeSplitter<ThreeBandSplitter> });
}

} // namespace bench
