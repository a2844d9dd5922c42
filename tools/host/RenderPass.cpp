#include "RenderPass.h"

#include "Failure.h"

#include <csignal>

namespace
{
volatile std::sig_atomic_t interrupted = 0;
} // namespace

void watchForInterruption()
{
    for (const auto number : { SIGINT, SIGTERM })
        std::signal (number, [] (int) { interrupted = 1; });
}

bool isInterrupted()
{
    return interrupted != 0;
}

int delayOf (PluginHost& host)
{
    return host.getParameter ("enable").getValue() > 0.5f ? host.getLatency() : 0;
}

double renderThrough (PluginHost& host, AudioFileReader& reader, int blockSize,
                      const RenderListeners& listeners)
{
    const auto& shape = reader.getShape();

    // The output of the first `latency` frames belongs before the file's start, so it is dropped, and as many
    // frames of silence bring the file's end out.
    const auto latency = delayOf (host);
    juce::AudioBuffer<float> block (shape.channels, blockSize), aligned (block);
    auto ticks = juce::int64 {};

    for (juce::int64 position = 0; position < shape.frames + latency; position += blockSize)
    {
        if (isInterrupted())
            throw Failure ("interrupted; what was not finished is not written");

        const auto length =
            static_cast<int> (juce::jmin<juce::int64> (blockSize, shape.frames + latency - position));
        block.setSize (shape.channels, length, false, false, true);
        reader.read (block, position);
        if (listeners.input)
            listeners.input (
                block, static_cast<int> (juce::jlimit<juce::int64> (0, length, shape.frames - position)));

        const auto start = juce::Time::getHighResolutionTicks();
        host.process (block);
        ticks += juce::Time::getHighResolutionTicks() - start;

        const auto skipped = static_cast<int> (juce::jlimit<juce::int64> (0, length, latency - position));
        for (auto channel = 0; channel < shape.channels; ++channel)
            aligned.copyFrom (channel, 0, block, channel, skipped, length - skipped);

        listeners.output (aligned, length - skipped);
        if (listeners.progress)
            listeners.progress (position + length - latency);
    }

    return juce::Time::highResolutionTicksToSeconds (ticks);
}
