#include "BundleDescription.h"

#include "common/ConfigFolder.h"
#include "core/OrvoAudioProcessor.h"
#include "state/StateTree.h"

#include <cmath>
#include <stdexcept>

namespace
{
constexpr auto presetPrefixes = "@prefix lv2:   <http://lv2plug.in/ns/lv2core#> .\n"
                                "@prefix pset:  <http://lv2plug.in/ns/ext/presets#> .\n"
                                "@prefix rdf:   <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .\n"
                                "@prefix rdfs:  <http://www.w3.org/2000/01/rdf-schema#> .\n"
                                "@prefix state: <http://lv2plug.in/ns/ext/state#> .\n\n";

juce::String quoted (const juce::String& text)
{
    return text.replace ("\\", "\\\\").replace ("\"", "\\\"").replace ("\n", "\\n").quoted();
}

juce::String iri (const juce::String& part)
{
    return "<" ORVO_LV2_URI ":" + part + ">";
}

/** The unit of a text such as "-6.0dB"; empty if it does not begin with a number. */
juce::String unitOf (const juce::String& text)
{
    return text.containsAnyOf ("0123456789") && juce::String ("+-0123456789").containsChar (text[0])
               ? text.trimCharactersAtStart ("+-.0123456789").trim()
               : juce::String();
}

bool isChoice (const juce::RangedAudioParameter& parameter)
{
    const auto text = parameter.getText (0.0f, 128);
    return ! text.containsOnly ("+-.0123456789") && unitOf (text).isEmpty();
}

/** The choices' names, or the unit, as the plug-in's own texts tell them. */
juce::String describe (const juce::RangedAudioParameter& parameter)
{
    const auto name = iri (parameter.getParameterID());

    if (! isChoice (parameter))
    {
        const auto unit = unitOf (parameter.getText (0.0f, 128));

        // A share from 0 to 1 is none of a hundred.
        return unit == "dB"   ? name + " units:unit units:db .\n"
               : unit == "Hz" ? name + " units:unit units:hz .\n"
                              : juce::String();
    }

    const auto& range = parameter.getNormalisableRange();
    const auto last = juce::roundToInt (range.end);
    juce::StringArray points;

    for (auto value = juce::roundToInt (range.start); value <= last; ++value)
        points.add ("[ rdfs:label "
                    + quoted (parameter.getText (range.convertTo0to1 (static_cast<float> (value)), 128))
                    + " ; rdf:value " + juce::String (value) + " ]");

    return name + "\n\tlv2:portProperty lv2:integer , lv2:enumeration ;\n\tlv2:scalePoint "
           + points.joinIntoString (" ,\n\t\t") + " .\n";
}

juce::String describeParameters (const OrvoAudioProcessor& processor)
{
    juce::String text ("\n<" ORVO_LV2_URI "> a lv2:DistortionPlugin .\n\n");

    for (const auto* parameter : processor.getParameters())
        text << describe (dynamic_cast<const juce::RangedAudioParameter&> (*parameter));

    return text;
}

/** The state that a host would get with the preset loaded, its path within the presets' folder. */
juce::String stateOf (OrvoAudioProcessor& processor, const juce::String& path)
{
    juce::MemoryBlock block;
    processor.getStateInformation (block);
    const auto xml =
        juce::AudioProcessor::getXmlFromBinary (block.getData(), static_cast<int> (block.getSize()));
    xml->setAttribute (tessarin::StateTree::presetPath, path);
    juce::AudioProcessor::copyXmlToBinary (*xml, block);
    return block.toBase64Encoding();
}

/** "Factory/Drums/Kick.tpre"; nothing for the initial patch. */
juce::String pathOf (const tessarin::Preset& preset)
{
    return preset.path.isEmpty()
               ? juce::String()
               : juce::File (preset.path)
                     .getRelativePathFrom (tessarin::getConfigFolder().getChildFile ("Presets"));
}

struct Presets
{
    juce::String listed;
    juce::String states =
        presetPrefixes + iri ("StateString") + " a rdf:Property ; rdfs:label \"State\" .\n\n";
};

Presets describePresets (OrvoAudioProcessor& processor)
{
    Presets texts;
    juce::StringArray banks;

    for (const auto& preset : processor.presetManager.getPresets())
    {
        if (! processor.presetManager.loadPreset (preset.index))
            throw std::runtime_error ("cannot load " + preset.path.toStdString());

        const auto path = pathOf (preset);
        const auto bank =
            path.fromFirstOccurrenceOf ("/", false, false).upToFirstOccurrenceOf ("/", false, false);
        const auto toName = [] (const juce::String& text) { return text.replaceCharacter (' ', '_'); };
        const auto name = iri ("preset:" + toName (bank.isEmpty() ? preset.name : bank + "/" + preset.name));

        texts.listed << name << "\n\ta pset:Preset ;\n\tlv2:appliesTo <" ORVO_LV2_URI "> ;\n\trdfs:label "
                     << quoted (preset.name) << " ;\n";

        if (bank.isNotEmpty())
        {
            texts.listed << "\tpset:bank " << iri ("bank:" + toName (bank)) << " ;\n";
            banks.addIfNotAlreadyThere (bank);
        }

        texts.listed << "\trdfs:seeAlso <presets.ttl> .\n";
        texts.states << name << "\n\ta pset:Preset ;\n\tlv2:appliesTo <" ORVO_LV2_URI "> ;\n\trdfs:label "
                     << quoted (preset.name) << " ;\n\tstate:state [ " << iri ("StateString") << " "
                     << quoted (stateOf (processor, path)) << " ] .\n\n";
    }

    for (const auto& bank : banks)
        texts.listed << iri ("bank:" + bank.replaceCharacter (' ', '_')) << " a pset:Bank ; rdfs:label "
                     << quoted (bank) << " .\n";

    return texts;
}

juce::String read (const juce::File& file)
{
    if (! file.existsAsFile())
        throw std::runtime_error ("the module has not written " + file.getFullPathName().toStdString());

    return file.loadFileAsString();
}

void write (const juce::File& file, const juce::String& text)
{
    if (! file.replaceWithText (text, false, false, "\n"))
        throw std::runtime_error ("cannot write " + file.getFullPathName().toStdString());
}
} // namespace

void completeBundle (const std::filesystem::path& bundle, const std::filesystem::path& configuration)
{
    const auto factory = configuration / "Tessarin/Orvo/Presets/Factory";
    std::filesystem::create_directories (factory);
    std::filesystem::copy (ORVO_PRESETS, factory, std::filesystem::copy_options::recursive);

    const juce::ScopedJuceInitialiser_GUI juceInitialiser;
    OrvoAudioProcessor processor;
    const juce::File folder (bundle.string());
    const auto manifest = folder.getChildFile ("manifest.ttl"), dsp = folder.getChildFile ("dsp.ttl");

    // JUCE takes a mailbox for a page.
    write (dsp, read (dsp).replace ("foaf:mbox <", "foaf:mbox <mailto:") + describeParameters (processor));

    const auto presets = describePresets (processor);
    write (manifest, read (manifest) + presets.listed);
    write (folder.getChildFile ("presets.ttl"), presets.states);
}
