#pragma once

#include "Arguments.h"
#include "HostedParameter.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>
#include <vector>

/** The built module, loaded and driven through VST3 as a host does it.

    Lives on the message thread. Without an editor, audio does too and the message loop never runs: what the
    module posts there is handled by nobody, so nothing moves between two calls. Errors are thrown as Failure.
*/
class PluginHost
{
public:
    /** `module`: a VST3 bundle. Throws unless it holds Orvo with all its parameters. */
    explicit PluginHost (const juce::File& module);
    ~PluginHost();

    [[nodiscard]] juce::AudioPluginInstance& getInstance() noexcept { return *instance; }

    /** Orvo's own parameters, then those that the VST3 wrapper adds. */
    [[nodiscard]] std::vector<HostedParameter>& getParameters() noexcept { return parameters; }

    /** By Orvo's own ID. Throws if there is none. */
    [[nodiscard]] HostedParameter& getParameter (juce::StringRef id);

    [[nodiscard]] bool acceptsChannels (int inputs, int outputs);

    /** Mono or stereo, for input and output; the audio is stopped until `prepare`. */
    void setChannels (int channels);

    /** Starts the audio from silence, with every parameter that was set before. */
    void prepare (double sampleRate, int maximumBlockSize);

    /** In place, at most the prepared block size. One thread at a time, and none during `prepare`. */
    void process (juce::AudioBuffer<float>& block);

    /** In samples, as the module says now. */
    [[nodiscard]] int getLatency() const;

    /** The module's own state block, the same bytes that any other host stores. */
    [[nodiscard]] juce::MemoryBlock getState() const;

    /** False, and nothing is done, for a block that the module would not take either. */
    [[nodiscard]] bool setState (const juce::MemoryBlock& block);

private:
    void findParameters();
    void start (double sampleRate, int maximumBlockSize);

    std::unique_ptr<juce::AudioPluginInstance> instance;
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
