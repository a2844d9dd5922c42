// A change of a parameter: as it is told, with IDs put together and looked up for every section, and as it runs.

#include "common/ParameterIds.h"
#include "common/Rounding.h"
#include "core/OrvoAudioProcessor.h"
#include "Ratios.h"

#include <memory>

namespace bench
{

namespace
{
const auto changedId = sectionTable[SectionRow::single].idOf (ParameterIds::thresholdPrefix);

/** The processor, and the sections that the plain form works on. */
struct Rig
{
    Rig()
    {
        processor.setRateAndBufferSizeDetails (hostRate, defaultBlockSize);
        processor.prepareToPlay (hostRate, defaultBlockSize);
    }

    /** Alternates between two values, as automation does. */
    float changeValue()
    {
        const auto next = value < -4.0f ? -3.0f : -5.0f;
        changed->store (next);
        return value = next;
    }

    /** Every setting and count that a change moves. */
    double reading() const
    {
        auto sum = static_cast<double> (processor.ceiling.threshold) + processor.ceiling.changeCount;
        for (const auto& section : processor.sections)
            sum += static_cast<double> (section.clipper->makeupGain - 3.0f * section.clipper->thresholdDb)
                   + section.clipper->changeCount + section.clipper->current->changeCount;
        return sum;
    }

    float read (const juce::String& id) const
    {
        return processor.parameters.getRawParameterValue (id)->load();
    }

    void changePlainly (const juce::String& id, float newValue)
    {
        const juce::ScopedLock scope (processor.processLock);

        for (const auto& section : processor.sections)
        {
            auto& clipper = *section.clipper;
            const auto isLinked = roundToSwitch (read (ParameterIds::linkPrefix + section.id));
            const auto threshold = read (ParameterIds::thresholdPrefix + section.id);
            const auto gain = isLinked ? -threshold : read (ParameterIds::gainPrefix + section.id);
            clipper.setParameter (threshold, 0);
            clipper.raiseChangeCount();
            clipper.setParameter (gain, 2);
            clipper.raiseChangeCount();

            if (id == ParameterIds::shapePrefix + section.id)
                clipper.setParameter (newValue, 1);

            if (id == ParameterIds::modePrefix + section.id)
                clipper.setMode (roundToChoice (newValue));

            if (id == ParameterIds::enablePrefix + section.id)
                clipper.enabled = roundToSwitch (newValue);

            if (id == ParameterIds::crossoverLow || id == ParameterIds::crossoverHigh)
                processor.splitter.setFrequencies (read (ParameterIds::crossoverLow),
                                                   read (ParameterIds::crossoverHigh));
        }

        const auto post = [] (const char* prefix) { return sectionTable[SectionRow::post].idOf (prefix); };
        const auto sum =
            roundToSwitch (read (post (ParameterIds::linkPrefix)))
                ? 0.0f
                : read (post (ParameterIds::thresholdPrefix)) + read (post (ParameterIds::gainPrefix));
        const auto isOn = roundToSwitch (read (post (ParameterIds::enablePrefix)));
        processor.ceiling.threshold = isOn && sum <= 0.0f ? decibels::toGain (sum) : 1.0f;
        processor.ceiling.raiseChangeCount();

        processor.levels.resetMaxima();
        processor.inputLoudnessMeter.reset();
        processor.outputLoudnessMeter.reset();
    }

    OrvoAudioProcessor processor;
    std::atomic<float>* changed = processor.parameters.getRawParameterValue (changedId);
    float value = 0.0f;
};
} // namespace

void addParameterPairs (std::vector<Pair>& pairs)
{
    pairs.push_back ({ "parameterChanged",
                       []
                       {
                           const auto rig = std::make_shared<Rig>();
                           return Form ([rig] (juce::AudioBuffer<float>&)
                                        { rig->changePlainly (changedId, rig->changeValue()); },
                                        [rig] { return rig->reading(); });
                       },
                       []
                       {
                           const auto rig = std::make_shared<Rig>();
                           return Form ([rig] (juce::AudioBuffer<float>&)
                                        { rig->processor.parameterChanged (changedId, rig->changeValue()); },
                                        [rig] { return rig->reading(); });
                       },
                       1 });
}

} // namespace bench
