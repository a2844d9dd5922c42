#include "AudioFile.h"

#include "Failure.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <bit>
#include <cmath>

namespace
{
constexpr auto leastRate = 8000.0;
constexpr auto greatestRate = 768000.0;

/** Both containers count bytes with 32 bits, AIFF with a sign. */
constexpr juce::int64 greatestDataSize = 0x7fffff00;

bool isAiff (const juce::File& file)
{
    return file.hasFileExtension ("aif;aiff;aifc");
}

int bytesOf (SampleFormat format)
{
    return format == SampleFormat::int16 ? 2 : format == SampleFormat::int24 ? 3 : 4;
}

/** By content and not by name. */
std::unique_ptr<juce::AudioFormatReader> createReader (const juce::File& file)
{
    for (const auto aiff : { false, true })
    {
        std::unique_ptr<juce::AudioFormat> format;
        if (aiff)
            format = std::make_unique<juce::AiffAudioFormat>();
        else
            format = std::make_unique<juce::WavAudioFormat>();

        auto stream = file.createInputStream();
        if (stream == nullptr)
            throw Failure (file.getFullPathName() + ": cannot be read");

        if (auto* reader = format->createReaderFor (stream.release(), true))
            return std::unique_ptr<juce::AudioFormatReader> (reader);
    }

    return nullptr;
}

SampleFormat formatOf (const juce::AudioFormatReader& reader)
{
    if (reader.usesFloatingPointData)
        return SampleFormat::float32;

    return reader.bitsPerSample <= 16   ? SampleFormat::int16
           : reader.bitsPerSample == 24 ? SampleFormat::int24
                                        : SampleFormat::int32;
}
} // namespace

AudioFileReader::AudioFileReader (const juce::File& file) : path (file.getFullPathName())
{
    if (! file.exists())
        throw Failure (path + ": no such file");

    if (! file.existsAsFile())
        throw Failure (path + ": not a file");

    reader = createReader (file);

    if (reader == nullptr)
        throw Failure (path + ": not a WAV or AIFF file that can be read");

    if (reader->numChannels < 1 || reader->numChannels > 2)
        throw Failure (path + ": has " + juce::String (reader->numChannels)
                       + " channels; only mono and stereo can be processed");

    if (reader->bitsPerSample != 8 && reader->bitsPerSample != 16 && reader->bitsPerSample != 24
        && reader->bitsPerSample != 32)
        throw Failure (path + ": has samples of " + juce::String (reader->bitsPerSample)
                       + " bits; only 8, 16, 24 and 32 are known");

    if (! (reader->sampleRate >= leastRate && reader->sampleRate <= greatestRate))
        throw Failure (path + ": has a sample rate of " + juce::String (reader->sampleRate)
                       + " Hz; only 8000 to 768000 can be processed");

    shape = { reader->sampleRate, static_cast<int> (reader->numChannels), reader->lengthInSamples,
              formatOf (*reader) };

    if (shape.frames < 0 || shape.frames * shape.channels * (reader->bitsPerSample / 8) > file.getSize())
        throw Failure (path + ": is cut short; its header tells of more audio than there is");
}

void AudioFileReader::read (juce::AudioBuffer<float>& destination, juce::int64 firstFrame)
{
    destination.clear();
    const auto available =
        juce::jlimit<juce::int64> (0, destination.getNumSamples(), shape.frames - firstFrame);

    if (available > 0
        && ! reader->read (&destination, 0, static_cast<int> (available), firstFrame, true, true))
        throw Failure (path + ": reading failed");
}

AudioFileWriter::AudioFileWriter (const juce::File& t, const AudioShape& s)
    : target (t), temporary (unfinishedFileFor (t)), shape (s), bigEndian (isAiff (t))
{
    const auto dataBytes = shape.frames * shape.channels * bytesOf (shape.format);

    if (dataBytes > greatestDataSize)
        throw Failure (target.getFullPathName() + ": would be larger than such a file can be (2 GB)");

    temporary.deleteFile();
    stream = std::make_unique<juce::FileOutputStream> (temporary);

    if (stream->failedToOpen())
        throw Failure (target.getFullPathName()
                       + ": cannot be written: " + stream->getStatus().getErrorMessage());

    if (bigEndian)
        writeAiffHeader (dataBytes);
    else
        writeWavHeader (dataBytes);
}

AudioFileWriter::~AudioFileWriter()
{
    stream.reset();
    temporary.deleteFile();
}

void AudioFileWriter::check (bool succeeded) const
{
    if (! succeeded)
        throw Failure (target.getFullPathName()
                       + ": writing failed: " + stream->getStatus().getErrorMessage());
}

void AudioFileWriter::writeWavHeader (juce::int64 dataBytes)
{
    const auto isFloat = shape.format == SampleFormat::float32;
    const auto frameBytes = shape.channels * bytesOf (shape.format);
    const auto rate = juce::roundToInt (shape.sampleRate);
    juce::MemoryOutputStream header;

    header << "RIFF";
    header.writeInt (static_cast<int> (36 + dataBytes + (dataBytes & 1)));
    header << "WAVEfmt ";
    header.writeInt (16);
    header.writeShort (isFloat ? 3 : 1);
    header.writeShort (static_cast<short> (shape.channels));
    header.writeInt (rate);
    header.writeInt (rate * frameBytes);
    header.writeShort (static_cast<short> (frameBytes));
    header.writeShort (static_cast<short> (8 * bytesOf (shape.format)));
    header << "data";
    header.writeInt (static_cast<int> (dataBytes));

    check (stream->write (header.getData(), header.getDataSize()));
}

void AudioFileWriter::writeAiffHeader (juce::int64 dataBytes)
{
    // Plain AIFF knows whole numbers alone; float needs the compressed kind with the "compression" fl32.
    const auto isFloat = shape.format == SampleFormat::float32;
    const auto commonBytes = isFloat ? 24 : 18;
    juce::MemoryOutputStream header;

    header << "FORM";
    header.writeIntBigEndian (
        static_cast<int> (4 + (isFloat ? 12 : 0) + 8 + commonBytes + 16 + dataBytes + (dataBytes & 1)));
    header << (isFloat ? "AIFC" : "AIFF");

    if (isFloat)
    {
        header << "FVER";
        header.writeIntBigEndian (4);
        header.writeIntBigEndian (static_cast<int> (0xa2805140));
    }

    header << "COMM";
    header.writeIntBigEndian (commonBytes);
    header.writeShortBigEndian (static_cast<short> (shape.channels));
    header.writeIntBigEndian (static_cast<int> (shape.frames));
    header.writeShortBigEndian (static_cast<short> (8 * bytesOf (shape.format)));

    // The rate as an 80 bit float: biased exponent, then the mantissa with its leading one.
    auto exponent = 0;
    const auto mantissa = std::frexp (shape.sampleRate, &exponent);
    header.writeShortBigEndian (static_cast<short> (16382 + exponent));
    header.writeInt64BigEndian (
        static_cast<juce::int64> (static_cast<juce::uint64> (std::ldexp (mantissa, 64))));

    if (isFloat)
    {
        header << "fl32";
        header.writeShort (0);
    }

    header << "SSND";
    header.writeIntBigEndian (static_cast<int> (8 + dataBytes));
    header.writeInt64BigEndian (0);

    check (stream->write (header.getData(), header.getDataSize()));
}

void AudioFileWriter::encodeInteger (juce::int32 value, int bytes)
{
    for (auto i = 0; i < bytes; ++i)
    {
        const auto shift = 8 * (bigEndian ? bytes - 1 - i : i);
        encoded.push_back (static_cast<char> (value >> shift));
    }
}

void AudioFileWriter::encode (float sample)
{
    const auto bytes = bytesOf (shape.format);

    if (shape.format == SampleFormat::float32)
    {
        encodeInteger (std::bit_cast<juce::int32> (sample), bytes);
        return;
    }

    const auto fullScale = std::ldexp (1.0, 8 * bytes - 1);
    const auto scaled =
        std::isfinite (sample) ? std::nearbyint (static_cast<double> (sample) * fullScale) : 0.0;
    encodeInteger (static_cast<juce::int32> (juce::jlimit (-fullScale, fullScale - 1.0, scaled)), bytes);
}

void AudioFileWriter::write (const juce::AudioBuffer<float>& frames, int numFrames)
{
    if (numFrames == 0)
        return;

    encoded.clear();

    for (auto frame = 0; frame < numFrames; ++frame)
        for (auto channel = 0; channel < shape.channels; ++channel)
            encode (frames.getSample (channel, frame));

    check (stream->write (encoded.data(), encoded.size()));
}

void AudioFileWriter::finish (bool mayReplace)
{
    if ((shape.frames * shape.channels * bytesOf (shape.format)) % 2 != 0)
        check (stream->writeByte (0));

    stream->flush();
    check (stream->getStatus().wasOk());
    stream.reset();
    moveIntoPlace (temporary, target, mayReplace);
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

bool hasAudioExtension (const juce::File& file)
{
    return file.hasFileExtension ("wav") || isAiff (file);
}
