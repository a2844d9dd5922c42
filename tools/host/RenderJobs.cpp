#include "RenderJobs.h"

#include "Failure.h"

#include <algorithm>
#include <filesystem>

namespace
{
bool areSameFile (const juce::File& a, const juce::File& b)
{
    std::error_code notComparable;
    return a == b
           || std::filesystem::equivalent (a.getFullPathName().toStdString(),
                                           b.getFullPathName().toStdString(), notComparable);
}

void checkOutput (const RenderJob& job, const std::vector<RenderJob>& all, bool mayReplace)
{
    const auto path = job.output.getFullPathName();

    if (job.output.isDirectory())
        throw Failure (path + ": is a folder");

    if (std::count_if (all.begin(), all.end(), [&] (const auto& other) { return other.output == job.output; })
        > 1)
        throw Failure (path + ": two inputs of this name would be written to it");

    if (std::any_of (all.begin(), all.end(),
                     [&] (const auto& other) { return areSameFile (other.input, job.output); }))
        throw Failure (path + ": is an input; it cannot be the output as well");

    if (job.output.exists() && ! mayReplace)
        throw Failure (path + ": exists already; --force replaces it");
}
} // namespace

OutputSettings outputSettingsFrom (const Arguments& arguments)
{
    OutputSettings settings;
    settings.blockSize = arguments.integerOf (blockOption.name, settings.blockSize, 1, 65536);
    settings.mayReplace = arguments.has (forceOption.name);
    settings.dither = arguments.has (ditherOption.name);

    if (arguments.has (bitsOption.name))
    {
        const auto names = juce::StringArray::fromTokens (bitsOption.value, "|", "");
        const auto index = names.indexOf (arguments.valueOf (bitsOption.name, {}));

        if (index < 0)
            throw Failure ("--bits is one of " + names.joinIntoString (", "), Failure::wrongUsage);

        settings.format = static_cast<SampleFormat> (index);
    }

    return settings;
}

std::vector<RenderJob> planJobs (const juce::StringArray& operands)
{
    if (operands.size() < 2)
        throw Failure ("an input and an output are needed", Failure::wrongUsage);

    const auto last = fileFromOperand (operands[operands.size() - 1]);
    const auto intoFolder = operands.size() > 2 || last.isDirectory();
    std::vector<RenderJob> jobs;

    for (auto i = 0; i < operands.size() - 1; ++i)
    {
        const auto input = fileFromOperand (operands[i]);
        jobs.push_back ({ input, intoFolder ? last.getChildFile (input.getFileName()) : last });
    }

    return jobs;
}

AudioShape outputShape (const AudioShape& input, const OutputSettings& settings)
{
    auto shape = input;
    shape.format = settings.format.value_or (shape.format);
    shape.dither = settings.dither;
    return shape;
}

void checkJob (const RenderJob& job, const std::vector<RenderJob>& all, const OutputSettings& settings)
{
    checkThatFits (job.output, outputShape (AudioFileReader (job.input).getShape(), settings));
    checkOutput (job, all, settings.mayReplace);
}

void provideFolder (const std::vector<RenderJob>& jobs)
{
    const auto folder = jobs.front().output.getParentDirectory();

    if (jobs.size() > 1 && ! folder.exists())
        if (const auto created = folder.createDirectory(); created.failed())
            throw Failure (folder.getFullPathName() + ": cannot be made: " + created.getErrorMessage());

    if (! folder.isDirectory())
        throw Failure (folder.getFullPathName() + ": no such folder");
}
