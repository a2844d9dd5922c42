// The section in each of its modes, and the splitter.

#include "dsp/MultiModeClipper.h"
#include "dsp/ThreeBandSplitter.h"
#include "Rows.h"

#include <memory>

namespace bench
{

namespace
{
using Context = juce::dsp::ProcessContextReplacing<float>;

const juce::dsp::ProcessSpec spec { hostRate, static_cast<juce::uint32> (defaultBlockSize), 2 };

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
    for (const auto& mode : MultiModeClipper().modes)
        addRow ("section/" + mode.name.removeCharacters (" ").toStdString(),
                [id = mode.id] { return makeSection (id); });

    addRow ("splitter", makeSplitter);
}

} // namespace bench
