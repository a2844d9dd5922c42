#include "PluginHost.h"

#include "Failure.h"
#include "state/StateBlock.h"

#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>

#include <map>

namespace
{
using Steinberg::Vst::IAudioProcessor;

/** What the module was asked for when it was loaded, until a file says otherwise. */
constexpr auto initialRate = 48000.0;
constexpr auto initialBlockSize = 512;

std::unique_ptr<juce::AudioPluginInstance> load (const juce::File& module)
{
    juce::AudioPluginFormatManager formats;
    formats.addFormat (new juce::VST3PluginFormat());

    juce::OwnedArray<juce::PluginDescription> found;
    formats.getFormat (0)->findAllTypesForFile (found, module.getFullPathName());

    if (found.isEmpty())
        throw Failure (module.getFullPathName() + " is not a VST3 module that can be loaded");

    juce::String error;
    auto instance = formats.createPluginInstance (*found[0], initialRate, initialBlockSize, error);

    if (instance == nullptr)
        throw Failure (module.getFullPathName() + ": " + error);

    return instance;
}

/** JUCE's wrapper adds a bypass and, where there are programs, their number. */
bool isAddedByWrapper (const juce::String& parameterId)
{
    constexpr juce::uint32 bypass = 0x62797073, program = 0x70727374;
    return parameterId == juce::String (bypass) || parameterId == juce::String (program);
}

juce::AudioProcessor::BusesLayout channelLayout (int inputs, int outputs)
{
    juce::AudioProcessor::BusesLayout buses;
    buses.inputBuses.add (juce::AudioChannelSet::canonicalChannelSet (inputs));
    buses.outputBuses.add (juce::AudioChannelSet::canonicalChannelSet (outputs));
    return buses;
}
} // namespace

PluginHost::PluginHost (const juce::File& module) : instance (load (module))
{
    findParameters();
}

PluginHost::~PluginHost()
{
    instance->releaseResources();
}

void PluginHost::findParameters()
{
    auto missing = orvoParameterIds();
    std::map<juce::String, juce::String> idOfHash;

    for (const auto& id : missing)
        idOfHash[juce::String (juce::VST3ClientExtensions::convertJuceParameterId (id))] = id;

    for (auto* parameter : instance->getParameters())
    {
        const auto* hosted = dynamic_cast<juce::HostedAudioProcessorParameter*> (parameter);
        const auto id = hosted != nullptr ? idOfHash[hosted->getParameterID()] : juce::String();

        if (id.isEmpty() && (hosted == nullptr || ! isAddedByWrapper (hosted->getParameterID())))
            throw Failure ("this module is not Orvo: its parameter \"" + parameter->getName (128)
                           + "\" is unknown");

        missing.removeString (id);
        parameters.emplace_back (*parameter, id);
    }

    if (! missing.isEmpty())
        throw Failure ("this module is not Orvo: it has no parameter \"" + missing[0] + "\"");
}

HostedParameter& PluginHost::getParameter (juce::StringRef id)
{
    for (auto& parameter : parameters)
        if (! parameter.isAddedByWrapper() && parameter.getId() == id)
            return parameter;

    throw Failure ("unknown parameter \"" + juce::String (id) + "\"; \"orvo-host params\" lists them");
}

bool PluginHost::acceptsChannels (int inputs, int outputs)
{
    instance->releaseResources();
    return instance->checkBusesLayoutSupported (channelLayout (inputs, outputs));
}

void PluginHost::setChannels (int channels)
{
    instance->releaseResources();

    if (! instance->setBusesLayout (channelLayout (channels, channels)))
        throw Failure ("the module refuses " + juce::String (channels) + " channels");
}

void PluginHost::start (double sampleRate, int maximumBlockSize)
{
    instance->releaseResources();
    instance->prepareToPlay (sampleRate, maximumBlockSize);
}

void PluginHost::prepare (double sampleRate, int maximumBlockSize)
{
    // Changed parameters travel with a block. A silent one delivers them; then the audio starts anew, so that
    // the latency is the final one and no meter or filter has seen anything.
    start (sampleRate, maximumBlockSize);
    juce::AudioBuffer<float> silence (instance->getTotalNumInputChannels(), maximumBlockSize);
    silence.clear();
    process (silence);
    start (sampleRate, maximumBlockSize);
}

void PluginHost::process (juce::AudioBuffer<float>& block)
{
    midi.clear();
    instance->processBlock (block, midi);
}

int PluginHost::getLatency() const
{
    struct Visitor final : juce::ExtensionsVisitor
    {
        void visitVST3Client (const VST3Client& client) override { component = client.getIComponentPtr(); }

        Steinberg::Vst::IComponent* component = nullptr;
    };

    Visitor visitor;
    instance->getExtensions (visitor);

    IAudioProcessor* processor = nullptr;
    if (visitor.component == nullptr
        || visitor.component->queryInterface (Steinberg::Vst::IAudioProcessor_iid,
                                              reinterpret_cast<void**> (&processor))
               != Steinberg::kResultOk)
        throw Failure ("the module has no audio processor");

    const auto latency = static_cast<int> (processor->getLatencySamples());
    processor->release();
    return latency;
}

// JUCE hands out and takes the state as its own XML with the module's block inside, as base 64.

juce::MemoryBlock PluginHost::getState() const
{
    juce::MemoryBlock frame, block;
    instance->getStateInformation (frame);

    if (const auto xml =
            juce::AudioProcessor::getXmlFromBinary (frame.getData(), static_cast<int> (frame.getSize())))
        if (const auto* component = xml->getChildByName ("IComponent"))
            if (block.fromBase64Encoding (component->getAllSubText()))
                return block;

    throw Failure ("the module gave no state");
}

bool PluginHost::setState (const juce::MemoryBlock& block)
{
    // The module has no way to say that it refuses one.
    const auto state = tessarin::parseStateBlock (block.getData(), static_cast<int> (block.getSize()));

    if (state == nullptr || ! state->getTagName().equalsIgnoreCase ("orvo"))
        return false;

    juce::XmlElement xml ("VST3PluginState");
    xml.createNewChildElement ("IComponent")->addTextElement (block.toBase64Encoding());

    juce::MemoryBlock frame;
    juce::AudioProcessor::copyXmlToBinary (xml, frame);
    instance->setStateInformation (frame.getData(), static_cast<int> (frame.getSize()));
    return true;
}

juce::File findModule (const juce::String& path)
{
    const auto programFolder =
        juce::File::getSpecialLocation (juce::File::currentExecutableFile).getParentDirectory();

    auto candidates = path.isNotEmpty() ? juce::StringArray { path }
                                        : juce::StringArray { "../Orvo.vst3", "../lib/vst3/Orvo.vst3",
                                                              ORVO_MODULE_FROM_PROGRAM };

    const auto base = path.isNotEmpty() ? juce::File::getCurrentWorkingDirectory() : programFolder;

    for (const auto& candidate : candidates)
        if (const auto module = base.getChildFile (candidate); module.exists())
            return module;

    throw Failure ("there is no module at " + base.getChildFile (candidates[0]).getFullPathName()
                   + "; scripts/build.sh builds it, --plugin names another");
}
