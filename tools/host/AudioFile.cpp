#include "AudioFile.h"

#include "AudioMetadata.h"
#include "Failure.h"

#include <fcntl.h>
#include <stdio.h>

#include <array>
#include <cmath>

namespace
{
/** By the name's ending. */
int containerOf (const juce::File& file)
{
    const std::pair<const char*, int> containers[] {
        { "wav", SF_FORMAT_WAV },   { "aif;aiff;aifc", SF_FORMAT_AIFF },
        { "rf64", SF_FORMAT_RF64 }, { "w64", SF_FORMAT_W64 },
        { "caf", SF_FORMAT_CAF },   { "flac", SF_FORMAT_FLAC }
    };

    for (const auto& [endings, container] : containers)
        if (file.hasFileExtension (endings))
            return container;

    throw Failure (file.getFullPathName()
                   + ": an output's name ends in .wav, .aif, .aiff, .aifc, .rf64, .w64, .caf or .flac");
}

/** In the order of SampleFormat. */
constexpr std::array subtypes { SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT };

int bitsOf (SampleFormat format)
{
    return format == SampleFormat::int16 ? 16 : format == SampleFormat::int24 ? 24 : 32;
}

/** Throws for samples that none of the formats holds. */
SampleFormat formatOf (int soundFormat, const juce::String& path)
{
    const auto subtype = soundFormat & SF_FORMAT_SUBMASK;
    const auto is8Bit = subtype == SF_FORMAT_PCM_S8 || subtype == SF_FORMAT_PCM_U8;
    const auto* const found =
        std::find (subtypes.begin(), subtypes.end(), is8Bit ? SF_FORMAT_PCM_16 : subtype);

    if (found != subtypes.end())
        return static_cast<SampleFormat> (found - subtypes.begin());

    SF_FORMAT_INFO info { subtype, "unknown", nullptr };
    sf_command (nullptr, SFC_GET_FORMAT_INFO, &info, sizeof (info));
    throw Failure (path + ": has samples of the kind \"" + info.name
                   + "\"; only whole numbers of 8, 16, 24 and 32 bits and 32 bit float are known");
}

/** Whether the header tells of more audio than there is, which libsndfile does not mind. */
bool isCut (const juce::File& file, int soundFormat)
{
    const auto container = soundFormat & SF_FORMAT_TYPEMASK;
    const auto isWide = container == SF_FORMAT_W64, isAiff = container == SF_FORMAT_AIFF;
    const auto isCaf = container == SF_FORMAT_CAF;
    const auto isBigEndian = isAiff || (soundFormat & SF_FORMAT_ENDMASK) == SF_ENDIAN_BIG;
    juce::FileInputStream stream (file);
    juce::int64 sizeBeyond32Bits = 0;

    for (juce::int64 position = isWide  ? 40
                                : isCaf ? 8
                                        : 12;
         stream.setPosition (position) && ! stream.isExhausted();)
    {
        std::array<char, 16> name {};
        stream.read (name.data(), isWide ? 16 : 4);
        juce::int64 size = isWide        ? stream.readInt64() - 24
                           : isCaf       ? stream.readInt64BigEndian()
                           : isBigEndian ? static_cast<juce::uint32> (stream.readIntBigEndian())
                                         : static_cast<juce::uint32> (stream.readInt());
        const auto begin = stream.getPosition(), rest = stream.getTotalLength() - begin;
        const std::string_view id (name.data(), 4);

        if (id == (isAiff ? "SSND" : "data"))
            return (container == SF_FORMAT_RF64 && size == 0xffffffff ? sizeBeyond32Bits : size) > rest;

        if (id == "ds64" && stream.setPosition (begin + 8))
            sizeBeyond32Bits = stream.readInt64();

        size = juce::jlimit<juce::int64> (0, rest, size);
        position = begin + size + (isWide ? -size & 7 : isCaf ? 0 : size & 1);
    }

    return true;
}

/** A FLAC file tells how many frames it has, and not where they lie. */
bool lacksItsEnd (SNDFILE* file, juce::int64 frames)
{
    std::array<float, 2> last {};
    return frames > 0
           && (sf_seek (file, frames - 1, SEEK_SET) < 0 || sf_readf_float (file, last.data(), 1) != 1
               || sf_seek (file, 0, SEEK_SET) != 0);
}

/** In the upper bits of 32: held at full scale; what is no number, or infinite, is silence. `dither`: in steps. */
int toInteger (float sample, int bits, double dither)
{
    const auto fullScale = std::ldexp (1.0, bits - 1);
    const auto scaled =
        std::isfinite (sample) ? std::nearbyint (static_cast<double> (sample) * fullScale + dither) : 0.0;
    return static_cast<int> (std::ldexp (juce::jlimit (-fullScale, fullScale - 1.0, scaled), 32 - bits));
}
} // namespace

AudioFileReader::AudioFileReader (const juce::File& source) : path (source.getFullPathName())
{
    if (! source.exists())
        throw Failure (path + ": no such file");

    if (! source.existsAsFile())
        throw Failure (path + ": not a file");

    SF_INFO info {};
    file.reset (sf_open (path.toRawUTF8(), SFM_READ, &info));

    if (file == nullptr && sf_error (nullptr) == SF_ERR_SYSTEM)
        throw Failure (path + ": cannot be read");

    const auto container = info.format & SF_FORMAT_TYPEMASK;
    const std::array known { SF_FORMAT_WAV, SF_FORMAT_WAVEX, SF_FORMAT_AIFF, SF_FORMAT_RF64,
                             SF_FORMAT_W64, SF_FORMAT_CAF,   SF_FORMAT_FLAC };

    // By content and not by name.
    if (file == nullptr || std::find (known.begin(), known.end(), container) == known.end())
        throw Failure (path + ": not a WAV, AIFF, RF64, W64, CAF or FLAC file that can be read");

    if (info.channels < 1 || info.channels > 2)
        throw Failure (path + ": has " + juce::String (info.channels)
                       + " channels; only mono and stereo can be processed");

    if (info.samplerate < 8000 || info.samplerate > 768000)
        throw Failure (path + ": has a sample rate of " + juce::String (info.samplerate)
                       + " Hz; only 8000 to 768000 can be processed");

    shape = { static_cast<double> (info.samplerate), info.channels, info.frames,
              formatOf (info.format, path) };

    if (container == SF_FORMAT_FLAC ? lacksItsEnd (file.get(), info.frames) : isCut (source, info.format))
        throw Failure (path + ": is cut short; its header tells of more audio than there is");
}

void AudioFileReader::read (juce::AudioBuffer<float>& destination, juce::int64 firstFrame)
{
    destination.clear();
    const auto available = static_cast<int> (
        juce::jlimit<juce::int64> (0, destination.getNumSamples(), shape.frames - firstFrame));

    if (available == 0)
        return;

    const auto check = [&] (bool succeeded)
    {
        if (! succeeded)
            throw Failure (path + ": reading failed: " + sf_strerror (file.get()));
    };

    if (sf_seek (file.get(), 0, SEEK_CUR) != firstFrame)
        check (sf_seek (file.get(), firstFrame, SEEK_SET) == firstFrame);

    std::array<float, 8192> samples;

    for (auto frame = 0; frame < available;)
    {
        const auto length =
            juce::jmin (available - frame, static_cast<int> (samples.size()) / shape.channels);
        check (sf_readf_float (file.get(), samples.data(), length) == length);

        for (auto i = 0; i < length * shape.channels; ++i)
            destination.setSample (i % shape.channels, frame + i / shape.channels,
                                   samples[static_cast<size_t> (i)]);

        frame += length;
    }
}

AudioFileWriter::AudioFileWriter (const juce::File& t, const AudioShape& s)
    : target (t), temporary (unfinishedFileFor (t)), shape (s)
{
    checkThatFits (target, shape);
    SF_INFO info {};
    info.samplerate = juce::roundToInt (shape.sampleRate);
    info.channels = shape.channels;
    info.format = containerOf (target) | subtypes[static_cast<size_t> (shape.format)];

    temporary.deleteFile();
    file.reset (sf_open (temporary.getFullPathName().toRawUTF8(), SFM_WRITE, &info));

    if (file == nullptr)
    {
        temporary.deleteFile();
        throw Failure (target.getFullPathName() + ": cannot be written: " + sf_strerror (nullptr));
    }

    // Float files would get a chunk with the time of day.
    sf_command (file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
}

AudioFileWriter::~AudioFileWriter()
{
    file.reset();
    temporary.deleteFile();
}

void AudioFileWriter::copyMetadata (const AudioFileReader& source)
{
    copySoundMetadata (source.getSound(), file.get());
}

void AudioFileWriter::write (const juce::AudioBuffer<float>& frames, int numFrames)
{
    const auto isFloat = shape.format == SampleFormat::float32;
    const auto isDithered = shape.dither && bitsOf (shape.format) < 32;
    std::vector<float> floats;
    std::vector<int> integers;

    for (auto frame = 0; frame < numFrames; ++frame)
        for (auto channel = 0; channel < shape.channels; ++channel)
        {
            const auto sample = frames.getSample (channel, frame);

            if (isFloat)
                floats.push_back (sample);
            else
                integers.push_back (toInteger (sample, bitsOf (shape.format),
                                               isDithered ? noise.nextDouble() - noise.nextDouble() : 0.0));
        }

    if ((isFloat ? sf_writef_float (file.get(), floats.data(), numFrames)
                 : sf_writef_int (file.get(), integers.data(), numFrames))
        != numFrames)
        throw Failure (target.getFullPathName() + ": writing failed: " + sf_strerror (file.get()));
}

void AudioFileWriter::finish (bool mayReplace)
{
    // What closing cannot write, it does not tell.
    const auto isWhole = [&]
    {
        try
        {
            return sf_close (file.release()) == 0
                   && AudioFileReader (temporary).getShape().frames == shape.frames;
        }
        catch (const Failure&)
        {
            return false;
        }
    };

    if (! isWhole())
        throw Failure (target.getFullPathName() + ": writing failed; is the disk full?");

    moveIntoPlace (temporary, target, mayReplace);
}

void checkThatFits (const juce::File& target, const AudioShape& shape)
{
    const auto container = containerOf (target);
    const auto path = target.getFullPathName();

    // WAV and AIFF count bytes with 32 bits, AIFF with a sign.
    if ((container == SF_FORMAT_WAV || container == SF_FORMAT_AIFF)
        && shape.frames * shape.channels * bitsOf (shape.format) / 8 > 0x7fffff00)
        throw Failure (path + ": would be larger than such a file can be (2 GB); .rf64 and .w64 have room");

    if (container != SF_FORMAT_FLAC)
        return;

    if (shape.format != SampleFormat::int16 && shape.format != SampleFormat::int24)
        throw Failure (path + ": such a file holds 16 or 24 bits; --bits chooses");

    // The greatest rate that its header has room for; no frames would stand for an unknown number of them.
    if (shape.sampleRate > 655350.0 || shape.frames < 1)
        throw Failure (path + ": such a file holds at least one frame, and at most 655350 of them a second");
}

void moveIntoPlace (const juce::File& finished, const juce::File& target, bool mayReplace)
{
    const auto from = finished.getFullPathName();
    const auto to = target.getFullPathName();

    const auto rename = [&] (unsigned int flags)
    { return renameat2 (AT_FDCWD, from.toRawUTF8(), AT_FDCWD, to.toRawUTF8(), flags) == 0; };

    // Not every file system can refuse to replace; there, look first.
    auto done = rename (mayReplace ? 0u : static_cast<unsigned int> (RENAME_NOREPLACE));
    if (! done && errno == EINVAL && ! target.exists())
        done = rename (0);

    if (! done)
        throw Failure (to + ": cannot be written: " + juce::String (std::strerror (errno)));
}

juce::File unfinishedFileFor (const juce::File& target)
{
    return target.getSiblingFile ("." + target.getFileName() + "." + juce::String (getpid()) + ".part");
}
