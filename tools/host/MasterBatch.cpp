#include "MasterBatch.h"

#include "Failure.h"
#include "Measurement.h"
#include "RenderPass.h"

#include <cmath>

namespace
{
/** Half of what readers of loudness print. */
constexpr auto tolerance = 0.05;

/** As many passes as a search takes when nothing is special about a file. */
constexpr auto usualPasses = 8.0;

/** Hears one side of a pass. */
class Ear
{
public:
    Ear (const AudioShape& shape, int blockSize, double peakLimit)
        : meter (shape.sampleRate, shape.channels, blockSize),
          loudness (shape.sampleRate, shape.channels, Loudness::Extent::whole, peakLimit),
          outline (shape.frames)
    {
    }

    void hear (const juce::AudioBuffer<float>& block, int frames)
    {
        meter.add (block, frames);
        loudness.add (block, frames);
        outline.add (block, frames);
    }

    [[nodiscard]] StreamFigures getFigures() const
    {
        return { loudness.getIntegrated(),
                 loudness.getRange(),
                 loudness.getMaximumShortTerm(),
                 loudness.getTruePeak(),
                 meter.getLoudnessText(),
                 loudness.getShortTermEachSecond(),
                 outline };
    }

    [[nodiscard]] const std::vector<Loudness::Over>& getOvers() const { return loudness.getOvers(); }

private:
    Measurement meter;
    Loudness loudness;
    Outline outline;
};
} // namespace

MasterBatch::MasterBatch (RenderPool& p, Options o, std::vector<RenderJob> j)
    : pool (p), options (std::move (o)), jobs (std::move (j)), results (jobs.size()), works (jobs.size())
{
    for (size_t i = 0; i < jobs.size(); ++i)
        attempt (results[i],
                 [&]
                 {
                     results[i].job = jobs[i];
                     checkJob (jobs[i], jobs, options.output);
                     results[i].shape =
                         outputShape (AudioFileReader (jobs[i].input).getShape(), options.output);
                 });
}

void MasterBatch::attempt (MasterResult& result, const std::function<void()>& work)
{
    if (result.error.isNotEmpty())
        return;

    try
    {
        work();
    }
    catch (const std::exception& error)
    {
        result.error = juce::String::fromUTF8 (error.what());
    }
}

void MasterBatch::run (const std::function<void (const MasterResult&)>& onResult,
                       const std::function<void (double)>& onProgress)
{
    size_t told = 0;
    const auto idle = [&]
    {
        auto done = 0.0;
        for (const auto& work : works)
            done += work.isDone ? 1.0 : juce::jmin (0.95, work.passes / usualPasses);

        for (; told < results.size() && works[told].isDone; ++told)
            onResult (results[told]);

        onProgress (done / static_cast<double> (works.size()));
    };

    options.order.isAlbum ? runAlbum (idle) : runEach (idle);
    idle();
}

GainRange MasterBatch::gainRange() const
{
    GainRange range;
    if (options.order.makeupIsFree)
        range.leastMakeupTenths = -juce::roundToInt (10.0 * (options.order.makeup + 18.0));

    return range;
}

void MasterBatch::take (const GainResult& found, MasterResult& result)
{
    result.gains = found.setting;
    result.loudness = found.loudness;
    result.isReached = found.isReached;
}

void MasterBatch::runEach (const std::function<void()>& idle)
{
    const auto master = [&] (PluginHost& host, int index)
    {
        auto& result = results[static_cast<size_t> (index)];
        const auto loudnessAt = [&] (GainSetting gains)
        { return measure (host, index, gains).getIntegrated(); };
        const auto findAndFinish = [&]
        {
            take (findGain (options.order.target, tolerance, gainRange(), loudnessAt), result);
            finish (host, index);
        };
        attempt (result, findAndFinish);
        works[static_cast<size_t> (index)].isDone = true;
    };

    pool.run (static_cast<int> (jobs.size()), master, idle);
}

void MasterBatch::runAlbum (const std::function<void()>& idle)
{
    const auto numFiles = static_cast<int> (jobs.size());

    const auto albumLoudness = [&] (GainSetting gains)
    {
        std::vector<std::optional<Loudness>> measured (jobs.size());
        const auto measureOne = [&] (PluginHost& host, int index)
        {
            attempt (results[static_cast<size_t> (index)],
                     [&] { measured[static_cast<size_t> (index)] = measure (host, index, gains); });
        };
        pool.run (numFiles, measureOne, idle);

        std::vector<Loudness> streams;
        for (auto& stream : measured)
            if (stream)
                streams.push_back (std::move (*stream));

        return Loudness::getIntegrated (streams);
    };

    const auto found = findGain (options.order.target, tolerance, gainRange(), albumLoudness);

    const auto finishOne = [&] (PluginHost& host, int index)
    {
        auto& result = results[static_cast<size_t> (index)];
        take (found, result);
        attempt (result, [&] { finish (host, index); });
        works[static_cast<size_t> (index)].isDone = true;
    };
    pool.run (numFiles, finishOne, idle);
}

void MasterBatch::start (PluginHost& host, const MasterResult& result, GainSetting gains)
{
    pool.onMessageThread (
        [&]
        {
            host.getParameter ("in_gain").setFromText (juce::String (gains.input));
            if (gains.makeupTenths != 0 || options.order.makeupIsFree)
                host.getParameter ("gain_post")
                    .setFromText (juce::String (options.order.makeup + gains.makeupTenths / 10.0, 1));

            host.setChannels (result.shape.channels);
            host.prepare (result.shape.sampleRate, options.output.blockSize);
        });
}

Loudness MasterBatch::measure (PluginHost& host, int index, GainSetting gains)
{
    const auto& result = results[static_cast<size_t> (index)];
    AudioFileReader reader (result.job.input);
    Loudness loudness (result.shape.sampleRate, result.shape.channels, Loudness::Extent::integrated);

    start (host, result, gains);
    renderThrough (host, reader, options.output.blockSize,
                   { {}, [&] (const auto& block, int frames) { loudness.add (block, frames); }, {} });
    ++works[static_cast<size_t> (index)].passes;
    return loudness;
}

void MasterBatch::finish (PluginHost& host, int index)
{
    auto& result = results[static_cast<size_t> (index)];
    const auto& job = result.job;
    AudioFileReader reader (job.input);
    std::optional<AudioFileWriter> writer;

    if (! options.isDry && (result.isReached || options.writesNearest))
    {
        writer.emplace (job.output, result.shape);
        writer->copyMetadata (reader);
    }

    Ear before (result.shape, options.output.blockSize, std::numeric_limits<double>::infinity());
    Ear after (result.shape, options.output.blockSize, options.order.peakLimit);
    const auto hearOutput = [&] (const juce::AudioBuffer<float>& block, int frames)
    {
        after.hear (block, frames);
        if (writer)
            writer->write (block, frames);
    };

    start (host, result, result.gains);
    renderThrough (host, reader, options.output.blockSize,
                   { [&] (const auto& block, int frames) { before.hear (block, frames); }, hearOutput, {} });

    result.makeup = options.order.makeup + result.gains.makeupTenths / 10.0;
    result.before = before.getFigures();
    result.after = after.getFigures();
    result.overs = after.getOvers();

    if (writer)
        writer->finish (options.output.mayReplace);
    result.isWritten = writer.has_value();
}
