// The envelope, the section in each of its modes, and the splitter.

#include "dsp/MultiModeClipper.h"
#include "dsp/ThreeBandSplitter.h"
#include "plain/Curves.h"
#include "Rows.h"

#include <memory>

namespace bench
{

namespace
{
using Context = juce::dsp::ProcessContextReplacing<float>;

const juce::dsp::ProcessSpec spec { hostRate, static_cast<juce::uint32> (defaultBlockSize), 2 };

/** What is left of a saturator without a curve. */
class EnvelopeAlone final : public luna::Saturator
{
public:
    void setParameter (float, int) override {}

    float processSample (float x) override { return x; }

    void processBlock (const Context&) override {}
};

/** The effect, held by what processes blocks with it. */
template <typename Effect>
auto runInPlace (std::shared_ptr<Effect> effect)
{
    return [effect = std::move (effect)] (juce::AudioBuffer<float>& buffer)
    {
        juce::dsp::AudioBlock<float> block (buffer);
        effect->process (Context (block));
        };
}

auto makeEnvelope()
{
    auto envelope = std::make_shared<EnvelopeAlone>();
    envelope->prepare (spec);
    return runInPlace (std::move (envelope));
}

auto makePlainEnvelope()
{
    return [envelope = reference::Envelope (hostRate)] (juce::AudioBuffer<float>& buffer) mutable
    {
        const auto* left = buffer.getReadPointer (0);
        const auto* right = buffer.getReadPointer (1);

        for (auto i = 0; i < buffer.getNumSamples(); ++i)
            envelope (left[i], right[i]);

        benchmark::DoNotOptimize (envelope.level);
        };
}

auto makeSection (int mode)
{
    auto section = std::make_shared<MultiModeClipper>();
    section->setMode (mode);
    section->prepare (spec);
    section->setParameter (-6.0f, 0);
    section->setParameter (0.5f, 1);
    section->setParameter (3.0f, 2);
    return runInPlace (std::move (section));
}

auto makeSplitter()
{
    auto splitter = std::make_shared<ThreeBandSplitter>();
    splitter->setFrequencies (160.0f, 3500.0f);
    splitter->prepare (spec);

    return [splitter = std::move (splitter)] (juce::AudioBuffer<float>& buffer)
    {
        juce::dsp::AudioBlock<float> block (buffer);
        splitter->split (block);
        splitter->mergeAll (block);
        };
}
} // namespace

void addSectionRows()
{
    addRow ("envelope", makeEnvelope);
    addRow ("envelope/plain", makePlainEnvelope);

    for (const auto& mode : MultiModeClipper().modes)
        addRow ("section/" + mode.name.removeCharacters (" ").toStdString(),
                [id = mode.id] { return makeSection (id); });

    addRow ("splitter", makeSplitter);
}

} // namespace bench
