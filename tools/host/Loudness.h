#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

#include <ebur128.h>

#include <limits>
#include <memory>
#include <vector>

/** Loudness and true peak of a stream after EBU R 128, by libebur128: a judge that shares no code with the plug-in's
    meters. Samples that are no numbers count as silence.

    Levels that nothing has, as the loudness of silence, are minus infinity. One thread at a time.
*/
class Loudness
{
public:
    enum class Extent
    {
        /** All of it. */
        whole,
        /** The integrated loudness alone, in a fraction of the time. */
        integrated
    };

    /** A stretch with true peaks above a limit, whole to a hundredth of a second. */
    struct Over
    {
        double seconds = 0.0, length = 0.0;

        /** The highest peak, in dBTP. */
        double level = 0.0;
    };

    /** `peakLimit`: in dBTP. */
    Loudness (double sampleRate, int channels, Extent extent = Extent::whole,
              double peakLimit = std::numeric_limits<double>::infinity());

    /** Any number of frames. */
    void add (const juce::AudioBuffer<float>& block, int frames);

    /** In LUFS. */
    [[nodiscard]] double getIntegrated() const;

    /** In LU. */
    [[nodiscard]] double getRange() const;

    /** The highest loudness of three seconds, in LUFS. */
    [[nodiscard]] double getMaximumShortTerm() const;

    /** In dBTP. */
    [[nodiscard]] double getTruePeak() const;

    /** In LUFS, for the three seconds that end with each second of the stream. */
    [[nodiscard]] const std::vector<double>& getShortTermEachSecond() const noexcept { return shortTerm; }

    [[nodiscard]] const std::vector<Over>& getOvers() const noexcept { return overs; }

    /** Of several streams as one programme, in LUFS. */
    [[nodiscard]] static double getIntegrated (const std::vector<Loudness>& streams);

private:
    void endPiece();
    void notePeak();

    struct Free
    {
        void operator() (ebur128_state* toFree) const { ebur128_destroy (&toFree); }
    };

    std::unique_ptr<ebur128_state, Free> state;
    Extent extent;
    double peakLimit;

    /** A piece is a hundredth of a second, in frames. */
    int channels, piece, inPiece = 0;
    std::vector<float> interleaved;
    juce::int64 pieces = 0;
    double maximumShortTerm = -std::numeric_limits<double>::infinity();
    std::vector<double> shortTerm;
    std::vector<Over> overs;
};

/** "-" for a level that nothing has. */
[[nodiscard]] juce::String levelText (double level, int decimals = 1);
