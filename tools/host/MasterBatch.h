#pragma once

#include "MasterResult.h"
#include "RenderPool.h"

#include <atomic>
#include <functional>

/** Brings files to a loudness: finds the gains by rendering, and renders the result. On the message thread. */
class MasterBatch
{
public:
    struct Options
    {
        MasterOrder order;
        OutputSettings output;

        /** Writes the nearest where the target cannot be reached; writes nothing at all. */
        bool writesNearest = false, isDry = false;
    };

    /** The pool's instances have all settings but the gains. */
    MasterBatch (RenderPool& pool, Options options, std::vector<RenderJob> jobs);

    /** Masters all. `onResult` gets each file's in their order as soon as those before it have ended; `onProgress`, ten
        times a second, what part is done. What befalls one file stands in its result. */
    void run (const std::function<void (const MasterResult&)>& onResult,
              const std::function<void (double part)>& onProgress);

    [[nodiscard]] const std::vector<MasterResult>& getResults() const noexcept { return results; }

private:
    /** Of one file, whose other members its own thread alone uses until `isDone`. */
    struct Work
    {
        std::atomic<int> passes { 0 };
        std::atomic<bool> isDone { false };
    };

    void runEach (const std::function<void()>& idle);
    void runAlbum (const std::function<void()>& idle);
    void attempt (MasterResult&, const std::function<void()>& work);
    static void take (const GainResult&, MasterResult&);
    [[nodiscard]] GainRange gainRange() const;

    void start (PluginHost&, const MasterResult&, GainSetting);
    [[nodiscard]] Loudness measure (PluginHost&, int index, GainSetting);
    void finish (PluginHost&, int index);

    RenderPool& pool;
    const Options options;
    std::vector<RenderJob> jobs;
    std::vector<MasterResult> results;
    std::vector<Work> works;
};
