#include "PluginHost.h"

#include "core/OrvoAudioProcessor.h"
#include "Failure.h"
#include "Lv2Bundle.h"
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
    const auto isLv2 = lv2Bundle::isBundle (module);
    juce::AudioPluginFormatManager formats;

    if (isLv2)
        formats.addFormat (lv2Bundle::makeFormat (module).release());
    else
        formats.addFormat (new juce::VST3PluginFormat());

    juce::OwnedArray<juce::PluginDescription> found;
    formats.getFormat (0)->findAllTypesForFile (found, isLv2 ? ORVO_LV2_URI : module.getFullPathName());

    if (found.isEmpty())
        throw Failure (module.getFullPathName() + " is not " + (isLv2 ? "an LV2 bundle" : "a VST3 module")
                       + " that can be loaded");

    juce::String error;
    auto instance = formats.createPluginInstance (*found[0], initialRate, initialBlockSize, error);

    if (instance == nullptr)
        throw Failure (module.getFullPathName() + ": " + error);

    return instance;
}

/** JUCE's wrappers add a bypass and, in VST3 where there are programs, their number. */
bool isAddedByWrapper (const juce::String& parameterId)
{
    constexpr juce::uint32 bypass = 0x62797073, program = 0x70727374;
    return parameterId == juce::String (bypass) || parameterId == juce::String (program)
           || parameterId == "sym:enabled";
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
    if (lv2Bundle::isBundle (module))
        ownTexts = std::make_unique<OrvoAudioProcessor>();

    findParameters();
}

PluginHost::~PluginHost()
{
    instance->releaseResources();
}

void PluginHost::findParameters()
{
    const auto ids = orvoParameterIds();
    std::map<juce::String, juce::String> idOfHash;
    std::map<juce::String, HostedParameter> found;
    std::vector<HostedParameter> added;

    for (const auto& id : ids)
        idOfHash[juce::String (juce::VST3ClientExtensions::convertJuceParameterId (id))] = id;

    for (auto* parameter : instance->getParameters())
    {
        const auto* hosted = dynamic_cast<juce::HostedAudioProcessorParameter*> (parameter);
        const auto hostedId = hosted != nullptr ? hosted->getParameterID() : juce::String();
        const auto id = isLv2() ? lv2Bundle::parameterIdFrom (hostedId) : idOfHash[hostedId];

        if (ids.contains (id))
            found.emplace (id, HostedParameter (*parameter, id,
                                                isLv2() ? ownTexts->parameters.getParameter (id) : nullptr));
        else if (isAddedByWrapper (hostedId))
            added.emplace_back (*parameter, juce::String(), nullptr);
        else
            throw Failure ("this module is not Orvo: its parameter \"" + parameter->getName (128)
                           + "\" is unknown");
    }

    // LV2 has no order.
    for (const auto& id : ids)
        if (const auto it = found.find (id); it != found.end())
            parameters.push_back (it->second);
        else
            throw Failure ("this module is not Orvo: it has no parameter \"" + id + "\"");

    for (const auto& parameter : added)
        parameters.push_back (parameter);
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

/** Changed parameters travel with a block, in LV2 those that a state or a preset sets too, back to the host. */
void PluginHost::deliver (double sampleRate, int maximumBlockSize)
{
    start (sampleRate, maximumBlockSize);
    juce::AudioBuffer<float> silence (instance->getTotalNumInputChannels(), maximumBlockSize);
    silence.clear();
    process (silence);
}

void PluginHost::prepare (double sampleRate, int maximumBlockSize)
{
    // After the silent block the audio starts anew, so that the latency is the final one and no meter or filter has seen
    // anything.
    deliver (sampleRate, maximumBlockSize);
    start (sampleRate, maximumBlockSize);
    isPrepared = true;
}

void PluginHost::process (juce::AudioBuffer<float>& block)
{
    // No LV2 state is restored meanwhile.
    const juce::ScopedLock scope (instance->getCallbackLock());
    midi.clear();
    instance->processBlock (block, midi);
}

int PluginHost::getLatency() const
{
    if (isLv2())
        return instance->getLatencySamples();

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

bool PluginHost::loadProgram (const juce::String& name)
{
    for (auto i = 0; i < instance->getNumPrograms(); ++i)
        if (instance->getProgramName (i) == name)
        {
            instance->setCurrentProgram (i);
            settle();
            return true;
        }

    return false;
}

/** Where no block comes. */
void PluginHost::settle()
{
    if (isLv2() && ! isPrepared)
        deliver (initialRate, initialBlockSize);
}

// JUCE hands out and takes a VST3 module's state as its own XML with the module's block inside, as base 64.

juce::MemoryBlock PluginHost::getState()
{
    settle();
    juce::MemoryBlock frame, block;
    instance->getStateInformation (frame);

    if (isLv2())
        block = lv2Bundle::blockFrom (frame);
    else if (const auto xml =
                 juce::AudioProcessor::getXmlFromBinary (frame.getData(), static_cast<int> (frame.getSize())))
        if (const auto* component = xml->getChildByName ("IComponent"))
            if (! block.fromBase64Encoding (component->getAllSubText()))
                block.reset();

    if (block.isEmpty())
        throw Failure ("the module gave no state");

    return block;
}

bool PluginHost::setState (const juce::MemoryBlock& block)
{
    // The module has no way to say that it refuses one.
    const auto state = tessarin::parseStateBlock (block.getData(), static_cast<int> (block.getSize()));

    if (state == nullptr || ! state->getTagName().equalsIgnoreCase ("orvo"))
        return false;

    juce::MemoryBlock frame;

    if (isLv2())
    {
        frame = lv2Bundle::presetFrom (block);
    }
    else
    {
        juce::XmlElement xml ("VST3PluginState");
        xml.createNewChildElement ("IComponent")->addTextElement (block.toBase64Encoding());
        juce::AudioProcessor::copyXmlToBinary (xml, frame);
    }

    instance->setStateInformation (frame.getData(), static_cast<int> (frame.getSize()));
    settle();
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
