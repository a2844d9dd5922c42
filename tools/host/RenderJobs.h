#pragma once

#include "Arguments.h"
#include "AudioFile.h"

#include <optional>
#include <vector>

/** A file and where its processed audio goes. */
struct RenderJob
{
    juce::File input, output;
};

/** What the options of a command say of every output. */
struct OutputSettings
{
    /** In frames. */
    int blockSize = 512;

    /** As in the input, if there is none. */
    std::optional<SampleFormat> format;
    bool dither = false;
    bool mayReplace = false;
};

/** The options that `outputSettingsFrom` knows. */
inline constexpr Option bitsOption { "--bits", "16|24|32|float",
                                     "the output's samples (else as in the input)" };
inline constexpr Option ditherOption { "--dither", nullptr, "TPDF dither, for outputs of 16 and 24 bits" };
inline constexpr Option blockOption { "--block", "N", "frames per block, 1 to 65536 (else 512)" };
inline constexpr Option forceOption { "--force", nullptr, "replaces existing outputs" };

/** Throws for values that are none. */
[[nodiscard]] OutputSettings outputSettingsFrom (const Arguments&);

/** Names every output before anything is read or written: of several inputs, or if the last operand is a folder
    already, in that folder. Throws with fewer than two operands. */
[[nodiscard]] std::vector<RenderJob> planJobs (const juce::StringArray& operands);

/** The shape of the output that belongs to an input. */
[[nodiscard]] AudioShape outputShape (const AudioShape& input, const OutputSettings&);

/** Throws, while nothing is written yet, unless the input can be read and the output written, with none of `all`
    in its way. */
void checkJob (const RenderJob&, const std::vector<RenderJob>& all, const OutputSettings&);

/** Makes the folder of the outputs of several inputs if it is all that is missing. Throws if there is none. */
void provideFolder (const std::vector<RenderJob>&);
