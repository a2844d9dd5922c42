#pragma once

#include "Arguments.h"
#include "HostedParameter.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>
#include <vector>

class OrvoAudioProcessor;

/** The built module, loaded and driven through VST3 or LV2 as a host does it.

    Lives on the message thread. Without an editor, audio does too and the message loop never runs: what the
    module posts there is handled by nobody, so nothing moves between two calls. Errors are thrown as Failure.
*/
class PluginHost
{
public:
    /** `module`: a VST3 or an LV2 bundle. Throws unless it holds Orvo with all its parameters. */
    explicit PluginHost (const juce::File& module);
    ~PluginHost();

    [[nodiscard]] juce::AudioPluginInstance& getInstance() noexcept { return *instance; }

    /** Orvo's own parameters, then those that the wrapper adds. */
    [[nodiscard]] std::vector<HostedParameter>& getParameters() noexcept { return parameters; }

    /** By Orvo's own ID. Throws if there is none. */
    [[nodiscard]] HostedParameter& getParameter (juce::StringRef id);

    [[nodiscard]] bool isLv2() const noexcept { return ownTexts != nullptr; }

    [[nodiscard]] bool acceptsChannels (int inputs, int outputs);

    /** Mono or stereo, for input and output; the audio is stopped until `prepare`. */
    void setChannels (int channels);

    /** Starts the audio from silence, with every parameter that was set before. */
    void prepare (double sampleRate, int maximumBlockSize);

    /** In place, at most the prepared block size. One thread at a time, and none during `prepare`. */
    void process (juce::AudioBuffer<float>& block);

    /** In samples, as the module says now; through LV2, as it said with the last block. */
    [[nodiscard]] int getLatency() const;

    /** The module's own state block, the same bytes that any other host stores. */
    [[nodiscard]] juce::MemoryBlock getState();

    /** False, and nothing is done, for a block that the module would not take either. */
    [[nodiscard]] bool setState (const juce::MemoryBlock& block);

    /** By the name that the host has for it; false if there is none. */
    [[nodiscard]] bool loadProgram (const juce::String& name);

private:
    void findParameters();
    void start (double sampleRate, int maximumBlockSize);
    void deliver (double sampleRate, int maximumBlockSize);
    void settle();

    /** LV2 has no texts for values, so these are those of the plug-in's code in this program. */
    std::unique_ptr<OrvoAudioProcessor> ownTexts;
    std::unique_ptr<juce::AudioPluginInstance> instance;
    bool isPrepared = false;
    std::vector<HostedParameter> parameters;
    juce::MidiBuffer midi;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (PluginHost)
};

/** The module named on the command line, or else Orvo.vst3 beside the program's folder, or else the one in
    the build folder that the program stands in. Throws if there is none. */
[[nodiscard]] juce::File findModule (const juce::String& path);

/** The option of every command that loads the module. */
inline constexpr Option pluginOption { "--plugin", "PATH",
                                       "the module to load (else the one built with this program)" };
