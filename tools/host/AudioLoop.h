#pragma once

#include "PluginHost.h"

#include <atomic>
#include <mutex>
#include <vector>

/** What a host's sound card does: a thread that gives the module a block whenever one is due, from a clip that
    is repeated. Nothing is heard. */
class AudioLoop : private juce::Thread
{
public:
    static constexpr auto blockSize = 512;

    struct Clip
    {
        juce::AudioBuffer<float> audio;
        double sampleRate = 48000.0;
    };

    /** A file of up to half an hour, or a test signal for an empty name. Throws for other files. */
    [[nodiscard]] static Clip loadClip (const juce::String& fileName);

    /** Sets the module's channels and rate to the clip's. */
    AudioLoop (PluginHost& host, Clip clip);
    ~AudioLoop() override;

    void start();

    /** Waits for the last block. */
    void stop();

    /** From now on each block has new values for what changes most of the window: layout, enablement, modes, links,
        crossovers and solo; and blocks follow each other with no more pause than the window needs to keep up, however
        slow a sanitizer makes both. JUCE works its queue off to the end, which a host without any pause would put off
        for ever. */
    void automate() noexcept { isAutomating = true; }

    /** From now on each block has new values for these, which go up and down once in two seconds. Any thread. */
    void sweep (std::vector<HostedParameter*> parameters);

    /** How long the module took for each block since the last call, in seconds. Any thread. */
    [[nodiscard]] std::vector<double> takeBlockTimes();

    [[nodiscard]] double getSecondsPlayed() const noexcept
    {
        return static_cast<double> (framesPlayed.load()) / clip.sampleRate;
    }

private:
    void run() override;
    void setParameters (juce::int64 block);
    void sweepParameters();
    void process (juce::AudioBuffer<float>& block);
    void fill (juce::AudioBuffer<float>& block, juce::int64 firstFrame) const;

    PluginHost& host;
    const Clip clip;
    std::atomic<juce::int64> framesPlayed { 0 };
    std::atomic<bool> isAutomating { false };
    std::vector<HostedParameter*> swept;
    std::mutex sweptLock;
    std::vector<double> blockTimes;
    std::mutex timesLock;

    JUCE_DECLARE_NON_COPYABLE (AudioLoop)
};
