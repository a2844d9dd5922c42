#pragma once

#include "core/ParameterValue.h"
#include "core/TessarinProcessor.h"
#include "dsp/SignalChain.h"

#include <unordered_map>

/** The 70 parameters, in the order in which the host sees them, and what a change of one does to the chain. */
class OrvoParameters
{
public:
    /** Adds them all to the owner, which must be made already. */
    OrvoParameters (tessarin::TessarinProcessor& owner, const juce::StringArray& modeNames);

    /** Takes threshold and makeup of every section anew, whatever has changed, and what `id` stands for. On the thread
        that set the parameter, with the owner's lock held; nothing allocates. */
    void applyChange (const juce::String& id, float newValue, const SignalChain::Parts&) const;

    /** Of the block that comes, from the present values. `layout` is the owner's to say. */
    [[nodiscard]] SignalChain::Settings getSettings (int layoutOfBlock) const;

    struct Section
    {
        Section (tessarin::TessarinProcessor&, const SectionInfo&, const juce::StringArray& modeNames);

        NumberValue threshold, shape;
        ChoiceValue mode;
        NumberValue gain;
        SwitchValue enable, mute, link;
    };

    const SwitchValue enable;
    const std::array<Section, numSections> sections;
    const NumberValue crossoverLow, crossoverHigh;
    const ChoiceValue soloBand, layout;
    const NumberValue inGain;
    const ChoiceValue oversampling;

private:
    enum class Kind
    {
        other,
        shape,
        mode,
        enable,
        crossover
    };

    /** What a change acts on beyond the levels of all sections. */
    struct Address
    {
        Kind kind = Kind::other;

        /** The row, for the kinds that belong to a section. */
        size_t section = 0;
    };

    void applyLevels (size_t section, MultiModeClipper&) const;
    [[nodiscard]] float getCeiling() const;

    std::unordered_map<juce::String, Address> addresses;
};
