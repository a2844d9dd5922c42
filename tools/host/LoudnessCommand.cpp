#include "AudioFile.h"
#include "Commands.h"
#include "Failure.h"
#include "Measurement.h"

#include <iostream>

namespace
{
constexpr auto blockSize = 512;

/** In LUFS or LU; "-" where there is none yet. */
juce::String textOf (float loudness, bool exists)
{
    return (exists ? juce::String (loudness, 2) : juce::String ("-")).paddedLeft (' ', 16);
}

void printLoudness (const juce::File& file)
{
    AudioFileReader reader (file);
    const auto& shape = reader.getShape();
    Measurement measurement (shape.sampleRate, shape.channels, blockSize);
    juce::AudioBuffer<float> block (shape.channels, blockSize);

    for (juce::int64 position = 0; position < shape.frames; position += blockSize)
    {
        reader.read (block, position);
        measurement.add (block,
                         static_cast<int> (juce::jmin<juce::int64> (blockSize, shape.frames - position)));
    }

    const auto data = measurement.getLoudness();
    std::cout << file.getFileName().paddedRight (' ', 22);

    for (const auto loudness :
         { data.integrated, data.momentary, data.momentaryMax, data.shortTerm, data.shortTermMax })
        std::cout << textOf (loudness, loudness > kf::noLoudness);

    std::cout << textOf (data.range, data.rangeEnd > kf::noLoudness) << std::endl;
}

void runLoudness (const Arguments& arguments)
{
    if (arguments.operands.isEmpty())
        throw Failure ("loudness takes one file or more", Failure::wrongUsage);

    std::cout << "file                        integrated   momentary end   momentary max  short-term end"
                 "  short-term max           range\n";

    for (const auto& operand : arguments.operands)
        printLoudness (fileFromOperand (operand));
}
} // namespace

Command loudnessCommand()
{
    return {
        "loudness",
        "FILE [FILE...]",
        "measures files with the meters of the plug-in\n"
        "The loudness is in LUFS: integrated, and of 400 ms and of 3 s at the file's end and at its loudest\n"
        "moment. The range is in LU.",
        {},
        runLoudness
    };
}
