#pragma once

#include "AudioFile.h"
#include "PluginHost.h"

#include <functional>

/** Who listens to one way of a file through the module. */
struct RenderListeners
{
    /** Blocks have at most the prepared size; of each, the first frames count. */
    using Listener = std::function<void (const juce::AudioBuffer<float>&, int)>;

    Listener input, output;

    /** Frames that came out so far. */
    std::function<void (juce::int64 done)> progress;
};

/** Feeds a file's audio through the module, which was prepared for its rate and channels, and hands out what came of it,
    lined up with the input and of its length. Throws once
    the program `isInterrupted`, and what listeners throw.
    Any thread, while no other uses the host or the reader. Returns the seconds that the module took. */
double renderThrough (PluginHost&, AudioFileReader&, int blockSize, const RenderListeners&);

/** In samples. Bypassed, the module passes the audio at once, whatever latency it reports. */
[[nodiscard]] int delayOf (PluginHost&);

/** Ends every pass in an orderly way on Ctrl-C or a request to end, so that no unfinished file stays. */
void watchForInterruption();

[[nodiscard]] bool isInterrupted();
