#include "OrvoAudioProcessor.h"

#include "common/ColourIds.h"
#include "common/ParameterIds.h"

namespace
{
constexpr auto defaultEditorWidth = 1068;
constexpr auto defaultEditorHeight = 800;

juce::String toPercent (float value)
{
    return juce::String (juce::roundToInt (value * 100.0f)) + "%";
}

juce::StringArray getModeNames (const MultiModeClipper& clipper)
{
    juce::StringArray names;

    for (const auto& mode : clipper.modes)
        names.add (mode.name);

    return names;
}
} // namespace

OrvoAudioProcessor::OrvoAudioProcessor()
    : TessarinProcessor (BusesProperties()
                             .withInput ("Input", juce::AudioChannelSet::stereo(), true)
                             .withOutput ("Output", juce::AudioChannelSet::stereo(), true)),
      oversamplers (makeOversamplerBank (2))
{
    waveformTaps.addTap (0.0f, luna::ColourIds::primaryColourId, WaveformTap::filledBars);
    waveformTaps.addTap (100.0f, luna::ColourIds::textColourId, WaveformTap::line);
    bandsToMerge.ensureStorageAllocated (3);

    buildSectionTable();
    addParameters();
    lookUpParameters();
    captureInitialState();

    if (! presetManager.hasFactoryPresets)
        toastManager.showError ("No factory presets found! Please reinstall the plugin.");

    for (auto* parameter : getParameters())
    {
        const auto& id = static_cast<juce::RangedAudioParameter*> (parameter)->getParameterID();
        parameterChanged (id, parameters.getRawParameterValue (id)->load());
    }

    editorWidth = defaultEditorWidth;
    editorHeight = defaultEditorHeight;
}

OrvoAudioProcessor::~OrvoAudioProcessor()
{
    removeParameterListeners();
}

void OrvoAudioProcessor::buildSectionTable()
{
    // "high_channel" is the side section: the id is stored in every project and preset.
    sections.addArray ({ Section { "Low Band", "low_band", &lowBandClipper },
                         Section { "Mid Band", "mid_band", &midBandClipper },
                         Section { "High Band", "high_band", &highBandClipper },
                         Section { "Mid Channel", "mid_channel", &midChannelClipper },
                         Section { "Side Channel", "high_channel", &sideChannelClipper },
                         Section { "Left Channel", "left_channel", &leftChannelClipper },
                         Section { "Right Channel", "right_channel", &rightChannelClipper },
                         Section { "Clipper", "single", &singleClipper },
                         Section { "Post", "post", &postClipper } });
    jassert (sections.size() == numSections);
}

void OrvoAudioProcessor::addParameters()
{
    addParameterBool (ParameterIds::enable, "Enabled", "Bypassed", "Enabled", true, false);

    for (const auto& section : sections)
        addSectionParameters (section);

    addParameterFloat (ParameterIds::crossoverLow, "XOver Low", 60.0f, 1000.0f, 160.0f, "Hz", 1, true);
    addParameterFloat (ParameterIds::crossoverHigh, "XOver High", 2000.0f, 10000.0f, 3500.0f, "Hz", 1, true);
    addParameterChoice (ParameterIds::soloBand, "Solo Band", { "Low", "Mid", "High", "None" }, 3, true);
    addParameterChoice (ParameterIds::layout, "Layout",
                        { "Single Band", "Multi Band", "Mid / Side", "Left / Right" }, singleBand, true);
    addParameterFloat (ParameterIds::inGain, "Input Gain", -18.0f, 18.0f, 0.0f, "dB", 1, true);
    addParameterChoice (ParameterIds::oversampling, "Oversampling", { "Off", "2x", "4x", "8x", "16x" }, 0,
                        true);
}

void OrvoAudioProcessor::addSectionParameters (const Section& section)
{
    const auto& id = section.id;
    const auto& name = section.displayName;
    constexpr auto defaultMode = 1;

    addParameterFloat (ParameterIds::thresholdPrefix + id, name + " Threshold", -18.0f, 0.0f, 0.0f, "dB", 1,
                       true);
    addParameterRange (ParameterIds::shapePrefix + id, name + " Shape", { 0.0f, 1.0f }, 0.0f, toPercent, {},
                       true);
    addParameterChoice (ParameterIds::modePrefix + id, name + " Type", getModeNames (*section.clipper),
                        defaultMode, true);
    addParameterFloat (ParameterIds::gainPrefix + id, name + " Gain", -18.0f, 18.0f, 0.0f, "dB", 1, true);
    addParameterBool (ParameterIds::enablePrefix + id, name + " Enable", "Off", "On", true, true);
    addParameterBool (ParameterIds::mutePrefix + id, name + " Mute", "Unmuted", "Muted", false, true);
    addParameterBool (ParameterIds::linkPrefix + id, name + " Link", "Unlinked", "Linked", false, true);
}

void OrvoAudioProcessor::lookUpParameters()
{
    using Kind = ParameterAddress::Kind;
    const auto find = [this] (const juce::String& id) { return parameters.getRawParameterValue (id); };

    for (auto i = 0; i < sections.size(); ++i)
    {
        const auto& id = sections.getReference (i).id;

        sectionValues[static_cast<size_t> (i)] = { find (ParameterIds::thresholdPrefix + id),
                                                   find (ParameterIds::gainPrefix + id),
                                                   find (ParameterIds::enablePrefix + id),
                                                   find (ParameterIds::mutePrefix + id),
                                                   find (ParameterIds::linkPrefix + id) };

        addresses[ParameterIds::shapePrefix + id] = { Kind::shape, i };
        addresses[ParameterIds::modePrefix + id] = { Kind::mode, i };
        addresses[ParameterIds::enablePrefix + id] = { Kind::enable, i };
    }

    globalValues = { find (ParameterIds::enable),        find (ParameterIds::crossoverLow),
                     find (ParameterIds::crossoverHigh), find (ParameterIds::soloBand),
                     find (ParameterIds::inGain),        find (ParameterIds::oversampling) };

    addresses[ParameterIds::crossoverLow] = { Kind::crossover };
    addresses[ParameterIds::crossoverHigh] = { Kind::crossover };
    addresses[ParameterIds::layout] = { Kind::layout };
    addresses[ParameterIds::oversampling] = { Kind::oversampling };
}
