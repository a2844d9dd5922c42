#include "AudioFile.h"
#include "Commands.h"
#include "Failure.h"
#include "Measurement.h"
#include "PictureFile.h"

#include <juce_graphics/juce_graphics.h>

#include <cmath>

namespace
{
constexpr auto width = 1400;
constexpr auto height = 600;
constexpr auto zoomSeconds = 0.012;

const juce::Colour ground (0xff16191d), laneGround (0xff1f2328), gridColour (0xff3a4048),
    textColour (0xffd5d9de), beforeColour (0xff8c96a3), afterColour (0xffe8853a);

struct Clip
{
    explicit Clip (const juce::File& file) : name (file.getFileName())
    {
        AudioFileReader reader (file);
        const auto& shape = reader.getShape();

        if (shape.frames < 1 || static_cast<double> (shape.frames) > 1800.0 * shape.sampleRate)
            throw Failure (file.getFullPathName() + ": a picture shows files of up to half an hour");

        sampleRate = shape.sampleRate;
        audio.setSize (shape.channels, static_cast<int> (shape.frames));
        reader.read (audio, 0);

        Measurement measurement (sampleRate, shape.channels, audio.getNumSamples());
        measurement.add (audio, audio.getNumSamples());
        levels = "peak " + measurement.getPeakText() + " dBFS, loudness " + measurement.getLoudnessText()
                 + " LUFS";
    }

    juce::String name, levels;
    juce::AudioBuffer<float> audio;
    double sampleRate = 0.0;
};

/** Places amplitudes from -1 to 1 and positions from 0 to 1 in a lane of the picture. */
struct Lane
{
    [[nodiscard]] float x (double position) const
    {
        return area.getX() + static_cast<float> (position) * area.getWidth();
    }

    [[nodiscard]] float y (float amplitude) const
    {
        return area.getCentreY() - juce::jlimit (-1.05f, 1.05f, amplitude) * area.getHeight() / 2.1f;
    }

    juce::Rectangle<float> area;
};

void drawText (juce::Graphics& g, const juce::String& text, float x, float y,
               juce::Justification justification)
{
    const auto left = justification.testFlags (juce::Justification::right) ? x - 600.0f : x;
    g.drawText (text, juce::Rectangle<float> (left, y - 9.0f, 600.0f, 18.0f), justification);
}

void drawGrid (juce::Graphics& g, const Lane& lane, bool labelled)
{
    g.setColour (laneGround);
    g.fillRect (lane.area);

    for (const auto db : { 0, -6, -12 })
        for (const auto sign : { 1.0f, -1.0f })
        {
            const auto y =
                std::floor (lane.y (sign * juce::Decibels::decibelsToGain (static_cast<float> (db))));
            g.setColour (gridColour);
            g.fillRect (lane.area.getX(), y, lane.area.getWidth(), 1.0f);
            g.setColour (textColour);

            if (labelled)
                drawText (g, juce::String (db) + (db == 0 ? " dBFS" : ""), lane.area.getX() - 8.0f, y,
                          juce::Justification::centredRight);
        }
}

void drawTimes (juce::Graphics& g, const Lane& lane, double start, double length, double scale,
                const char* unit)
{
    // The finest step of 1, 2 or 5 times a power of ten that leaves room for the labels.
    const auto least = length * scale * 90.0 / static_cast<double> (lane.area.getWidth());
    const auto decade = std::pow (10.0, std::floor (std::log10 (least)));
    const auto step = juce::jmax (1.0, decade
                                           * (least <= 2.0 * decade   ? 2.0
                                              : least <= 5.0 * decade ? 5.0
                                                                      : 10.0));

    for (auto tick = std::ceil (start * scale / step); tick * step <= (start + length) * scale; tick += 1.0)
    {
        const auto x = std::floor (lane.x ((tick * step / scale - start) / length));
        g.setColour (gridColour);
        g.fillRect (x, lane.area.getY(), 1.0f, lane.area.getHeight() + 5.0f);
        g.setColour (textColour);
        g.drawText (juce::String (juce::roundToInt (tick * step)) + unit,
                    juce::Rectangle<float> (x - 40.0f, lane.area.getBottom() + 6.0f, 80.0f, 18.0f),
                    juce::Justification::centred);
    }
}

/** One line per column, from the smallest to the greatest sample of all channels in it. */
void drawWaveform (juce::Graphics& g, const Lane& lane, const juce::AudioBuffer<float>& audio)
{
    const auto columns = static_cast<int> (lane.area.getWidth());
    const auto frames = static_cast<juce::int64> (audio.getNumSamples());

    for (auto column = 0; column < columns; ++column)
    {
        const auto first = static_cast<int> (frames * column / columns);
        const auto end = juce::jmax (first + 1, static_cast<int> (frames * (column + 1) / columns));
        auto range = audio.findMinMax (0, first, end - first);

        for (auto channel = 1; channel < audio.getNumChannels(); ++channel)
            range = range.getUnionWith (audio.findMinMax (channel, first, end - first));

        const auto top = lane.y (range.getEnd());
        g.fillRect (lane.area.getX() + static_cast<float> (column), top, 1.0f,
                    juce::jmax (1.0f, lane.y (range.getStart()) - top));
    }
}

juce::Path zoomedPath (const Lane& lane, const juce::AudioBuffer<float>& audio, int channel, int first,
                       int count)
{
    juce::Path path;

    for (auto i = 0; i <= count && first + i < audio.getNumSamples(); ++i)
    {
        const juce::Point<float> point { lane.x (static_cast<double> (i) / count),
                                         lane.y (audio.getSample (channel, first + i)) };
        if (i == 0)
            path.startNewSubPath (point);
        else
            path.lineTo (point);
    }

    return path;
}

/** Both clips over each other, around the loudest sample of the first. */
void drawZoom (juce::Graphics& g, const Lane& lane, const Clip& before, const Clip& after)
{
    const auto frames = before.audio.getNumSamples();
    const auto count = juce::jlimit (1, frames, juce::roundToInt (zoomSeconds * before.sampleRate));
    auto loudest = 0, loudestChannel = 0;

    for (auto channel = 0; channel < before.audio.getNumChannels(); ++channel)
        for (auto i = 0; i < frames; ++i)
            if (std::abs (before.audio.getSample (channel, i))
                > std::abs (before.audio.getSample (loudestChannel, loudest)))
            {
                loudest = i;
                loudestChannel = channel;
            }

    const auto first = juce::jlimit (0, frames - count, loudest - count / 2);

    drawTimes (g, lane, first / before.sampleRate, count / before.sampleRate, 1000.0, " ms");
    g.reduceClipRegion (lane.area.toNearestInt());
    g.setColour (beforeColour);
    g.strokePath (zoomedPath (lane, before.audio, loudestChannel, first, count), juce::PathStrokeType (2.0f));
    g.setColour (afterColour);
    g.strokePath (zoomedPath (lane, after.audio, loudestChannel, first, count), juce::PathStrokeType (2.0f));
}

void drawPicture (juce::Graphics& g, const Clip& before, const Clip& after)
{
    const Lane top { { 80.0f, 50.0f, 840.0f, 220.0f } };
    const Lane bottom { { 80.0f, 325.0f, 840.0f, 220.0f } };
    const Lane zoom { { 980.0f, 50.0f, 390.0f, 495.0f } };
    const auto seconds = before.audio.getNumSamples() / before.sampleRate;

    g.fillAll (ground);
    g.setFont (juce::FontOptions (16.0f));

    for (const auto& [lane, clip, colour, role] : { std::tuple { top, &before, beforeColour, "before: " },
                                                    { bottom, &after, afterColour, "after: " } })
    {
        drawGrid (g, lane, true);
        drawTimes (g, lane, 0.0, seconds, 1.0, " s");
        g.setColour (colour);
        drawWaveform (g, lane, clip->audio);
        drawText (g, role + clip->name, lane.area.getX(), lane.area.getY() - 16.0f,
                  juce::Justification::centredLeft);
        g.setColour (textColour);
        drawText (g, clip->levels, lane.area.getRight(), lane.area.getY() - 16.0f,
                  juce::Justification::centredRight);
    }

    drawGrid (g, zoom, false);
    g.setColour (textColour);
    drawText (g, "the loudest moment, before and after", zoom.area.getX(), zoom.area.getY() - 16.0f,
              juce::Justification::centredLeft);
    drawZoom (g, zoom, before, after);
}

void runPicture (const Arguments& arguments)
{
    if (arguments.operands.size() != 3)
        throw Failure ("picture takes two audio files and a PNG file", Failure::wrongUsage);

    const Clip before (fileFromOperand (arguments.operands[0]));
    const Clip after (fileFromOperand (arguments.operands[1]));
    const auto target = fileFromOperand (arguments.operands[2]);

    if (before.audio.getNumSamples() != after.audio.getNumSamples()
        || before.audio.getNumChannels() != after.audio.getNumChannels()
        || juce::roundToInt (before.sampleRate) != juce::roundToInt (after.sampleRate))
        throw Failure ("the two audio files differ in length, channels or rate");

    checkPictureTarget (target, arguments.has ("--force"));

    juce::Image image (juce::Image::RGB, width, height, true, juce::SoftwareImageType());
    {
        juce::Graphics g (image);
        drawPicture (g, before, after);
    }

    savePicture (image, target, arguments.has ("--force"));
}
} // namespace

Command pictureCommand()
{
    return { "picture",
             "BEFORE AFTER OUT.png",
             "draws the waveforms of a file before and after processing",
             { { "--force", nullptr, "replaces an existing picture" } },
             runPicture };
}
