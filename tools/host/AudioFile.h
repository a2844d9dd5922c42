#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

#include <sndfile.h>

#include <memory>
#include <vector>

enum class SampleFormat
{
    int16,
    int24,
    int32,
    float32
};

/** What a file of audio holds. */
struct AudioShape
{
    double sampleRate = 0.0;
    int channels = 0;
    juce::int64 frames = 0;
    SampleFormat format = SampleFormat::int16;

    /** Of a file that is written: TPDF dither of one bit to either side, the same for each file, for 16 and 24 bits. */
    bool dither = false;
};

struct CloseSound
{
    void operator() (SNDFILE* file) const { sf_close (file); }
};

using SoundPointer = std::unique_ptr<SNDFILE, CloseSound>;

/** A WAV, AIFF, RF64, W64, CAF or FLAC file, mono or stereo, read in pieces. */
class AudioFileReader
{
public:
    /** Throws for whatever is no such file. */
    explicit AudioFileReader (const juce::File& file);

    [[nodiscard]] const AudioShape& getShape() const noexcept { return shape; }

    /** Fills `destination`; frames beyond the end are silence. */
    void read (juce::AudioBuffer<float>& destination, juce::int64 firstFrame);

    /** For what libsndfile reads beside the audio. */
    [[nodiscard]] SNDFILE* getSound() const noexcept { return file.get(); }

private:
    juce::String path;
    SoundPointer file;
    AudioShape shape;
};

/** Writes a file of known length in the format that its name's ending stands for, and puts it into place only when it
    is whole.

    The audio goes to a hidden file in the same folder, which becomes the target with one rename in `finish`
    and is removed if that is not reached. So no failure leaves half a file or touches an old one.
*/
class AudioFileWriter
{
public:
    AudioFileWriter (const juce::File& target, const AudioShape& shape);
    ~AudioFileWriter();

    /** Takes over what describes the audio, as far as the format has room for it; before the first `write`. */
    void copyMetadata (const AudioFileReader&);

    /** Appends the first `numFrames`. Samples beyond full scale are held at it, except in float files. */
    void write (const juce::AudioBuffer<float>& frames, int numFrames);

    /** Throws if the target exists and must not be replaced. */
    void finish (bool mayReplace);

private:
    juce::File target, temporary;
    AudioShape shape;
    SoundPointer file;
    juce::Random noise { 1 };

    JUCE_DECLARE_NON_COPYABLE (AudioFileWriter)
};

/** Throws unless such a file can hold that. */
void checkThatFits (const juce::File& target, const AudioShape& shape);

/** Puts a whole new file in place of `target`, or where no file is unless `mayReplace`. Throws, and leaves
    `target` alone, if that cannot be. */
void moveIntoPlace (const juce::File& finished, const juce::File& target, bool mayReplace);

/** A hidden name beside `target` for a file that is not whole yet. */
[[nodiscard]] juce::File unfinishedFileFor (const juce::File& target);
