#include "OrvoParameters.h"

#include "common/Decibels.h"
#include "common/ParameterIds.h"

#include <utility>

namespace
{
juce::String toPercent (float value)
{
    return juce::String (juce::roundToInt (value * 100.0f)) + "%";
}

template <size_t... rows>
std::array<OrvoParameters::Section, numSections> makeSections (tessarin::TessarinProcessor& owner,
                                                               const juce::StringArray& modeNames,
                                                               std::index_sequence<rows...>)
{
    return { OrvoParameters::Section { owner, sectionTable[rows], modeNames }... };
}

constexpr auto defaultMode = 1;
} // namespace

OrvoParameters::Section::Section (tessarin::TessarinProcessor& owner, const SectionInfo& info,
                                  const juce::StringArray& modeNames)
    : threshold (owner.addParameterFloat (info.idOf (ParameterIds::thresholdPrefix),
                                          info.nameOf ("Threshold"), -18.0f, 0.0f, 0.0f, "dB", 1, true)),
      shape (owner.addParameterRange (info.idOf (ParameterIds::shapePrefix), info.nameOf ("Shape"),
                                      { 0.0f, 1.0f }, 0.0f, toPercent, {}, true)),
      mode (owner.addParameterChoice (info.idOf (ParameterIds::modePrefix), info.nameOf ("Type"), modeNames,
                                      defaultMode, true)),
      gain (owner.addParameterFloat (info.idOf (ParameterIds::gainPrefix), info.nameOf ("Gain"), -18.0f,
                                     18.0f, 0.0f, "dB", 1, true)),
      enable (owner.addParameterBool (info.idOf (ParameterIds::enablePrefix), info.nameOf ("Enable"), "Off",
                                      "On", true, true)),
      mute (owner.addParameterBool (info.idOf (ParameterIds::mutePrefix), info.nameOf ("Mute"), "Unmuted",
                                    "Muted", false, true)),
      link (owner.addParameterBool (info.idOf (ParameterIds::linkPrefix), info.nameOf ("Link"), "Unlinked",
                                    "Linked", false, true))
{
}

OrvoParameters::OrvoParameters (tessarin::TessarinProcessor& owner, const juce::StringArray& modeNames)
    : enable (owner.addParameterBool (ParameterIds::enable, "Enabled", "Bypassed", "Enabled", true, false)),
      sections (makeSections (owner, modeNames, std::make_index_sequence<numSections>())),
      crossoverLow (owner.addParameterFloat (ParameterIds::crossoverLow, "XOver Low", 60.0f, 1000.0f, 160.0f,
                                             "Hz", 1, true)),
      crossoverHigh (owner.addParameterFloat (ParameterIds::crossoverHigh, "XOver High", 2000.0f, 10000.0f,
                                              3500.0f, "Hz", 1, true)),
      soloBand (owner.addParameterChoice (ParameterIds::soloBand, "Solo Band", toStringArray (Solo::names),
                                          Solo::none, true)),
      layout (owner.addParameterChoice (ParameterIds::layout, "Layout", toStringArray (Layout::names),
                                        Layout::singleBand, true)),
      inGain (
          owner.addParameterFloat (ParameterIds::inGain, "Input Gain", -18.0f, 18.0f, 0.0f, "dB", 1, true)),
      oversampling (owner.addParameterChoice (ParameterIds::oversampling, "Oversampling",
                                              toStringArray (Oversampling::names), 0, true))
{
    for (size_t row = 0; row < numSections; ++row)
    {
        const auto& info = sectionTable[row];
        addresses[info.idOf (ParameterIds::shapePrefix)] = { Kind::shape, row };
        addresses[info.idOf (ParameterIds::modePrefix)] = { Kind::mode, row };
        addresses[info.idOf (ParameterIds::enablePrefix)] = { Kind::enable, row };
    }

    for (const auto* id : { ParameterIds::crossoverLow, ParameterIds::crossoverHigh })
        addresses[id] = { Kind::crossover };
}

void OrvoParameters::applyChange (const juce::String& id, float newValue,
                                  const SignalChain::Parts& parts) const
{
    for (size_t row = 0; row < numSections; ++row)
        applyLevels (row, *parts.sections[row]);

    const auto found = addresses.find (id);
    const auto address = found == addresses.end() ? Address {} : found->second;
    auto& section = *parts.sections[address.section];

    switch (address.kind)
    {
        case Kind::shape:
            section.setParameter (newValue, 1);
            section.raiseChangeCount();
            break;

        case Kind::mode: section.setMode (roundToChoice (newValue)); break;
        case Kind::enable: section.enabled = roundToSwitch (newValue); break;
        case Kind::crossover: parts.splitter.setFrequencies (crossoverLow.get(), crossoverHigh.get()); break;
        case Kind::other: break;
    }

    parts.ceiling.threshold = getCeiling();
    parts.ceiling.raiseChangeCount();
}

void OrvoParameters::applyLevels (size_t row, MultiModeClipper& clipper) const
{
    const auto& section = sections[row];
    const auto threshold = section.threshold.get();
    clipper.setLevels (threshold, section.link.get() ? -threshold : section.gain.get());
}

float OrvoParameters::getCeiling() const
{
    const auto& section = sections[SectionRow::post];
    const auto sumDb = section.link.get() ? 0.0f : section.threshold.get() + section.gain.get();

    return sumDb > 0.0f || ! section.enable.get() ? 1.0f : decibels::toGain (sumDb);
}

SignalChain::Settings OrvoParameters::getSettings (int layoutOfBlock) const
{
    SignalChain::Settings settings;

    // The parameter moves in tenths, the gain works in whole decibels.
    settings.inputGainDb = static_cast<float> (juce::roundToInt (inGain.get()));
    settings.layout = layoutOfBlock;
    settings.soloBand = soloBand.get();

    for (size_t band = 0; band < numBands; ++band)
        settings.isBandMuted[band] = sections[band].mute.get();

    return settings;
}
