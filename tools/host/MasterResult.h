#pragma once

#include "GainSearch.h"
#include "Loudness.h"
#include "RenderJobs.h"

#include <array>
#include <vector>

/** The outline of a waveform: lowest and highest sample of each column. */
class Outline
{
public:
    static constexpr int numColumns = 600;

    struct Column
    {
        float lowest = 0.0f, highest = 0.0f;
    };

    /** `frames`: of the whole stream. */
    explicit Outline (juce::int64 frames = 0) : total (frames) {}

    void add (const juce::AudioBuffer<float>& block, int frames);

    [[nodiscard]] const std::array<Column, numColumns>& getColumns() const noexcept { return columns; }

private:
    juce::int64 total, position = 0;
    std::array<Column, numColumns> columns {};
};

/** What was measured of a file, before or after. Levels that nothing has are minus infinity. */
struct StreamFigures
{
    /** In LUFS, LU, LUFS and dBTP, as EBU R 128 has them. */
    double integrated = 0.0, range = 0.0, shortTerm = 0.0, truePeak = 0.0;

    /** Integrated, as the plug-in's own meter says it. */
    juce::String meter;
    std::vector<double> shortTermEachSecond;
    Outline outline;
};

/** What became of one file. */
struct MasterResult
{
    RenderJob job;
    AudioShape shape;
    GainSetting gains;

    /** What they gave when they were found, in LUFS: this file or, as an album, all together. */
    double loudness = 0.0;

    /** The makeup of Post that was used, in dB. */
    double makeup = 0.0;
    StreamFigures before, after;
    std::vector<Loudness::Over> overs;

    /** Why nothing came of it, or empty. */
    juce::String error;
    bool isReached = false, isWritten = false;
};

/** What was asked of a batch, and with which settings. */
struct MasterOrder
{
    /** In LUFS, of each file or, as an album, of all together. */
    double target = 0.0;

    /** In dBTP; without one, infinite. */
    double peakLimit = 0.0;
    bool isAlbum = false;

    /** Whether the makeup of Post may be lowered, and from where, in dB. */
    bool makeupIsFree = false;
    double makeup = 0.0;

    /** What is not at its default but for the gains, and the module's version. */
    juce::StringArray settings;
    juce::String version;

    /** As they are said to a user: why a target is missed. */
    [[nodiscard]] juce::String whyMissed (const MasterResult&) const;
};
