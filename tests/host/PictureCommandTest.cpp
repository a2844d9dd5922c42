#include "../widgets/Pixels.h"
#include "CommandsUnderTest.h"

#include <cmath>
#include <tuple>

namespace
{
using juce::Rectangle;

class PictureCommand : public Commands
{
protected:
    PictureCommand()
    {
        // Left goes up and right goes down by half as much, for half a second; then one sample stands out.
        for (const auto& [name, amplitude] : { std::pair { "before.wav", 0.8f }, { "after.wav", 0.4f } })
        {
            juce::AudioBuffer<float> audio (2, 48000);
            audio.clear();
            for (auto i = 0; i < 24000; i += 2)
            {
                audio.setSample (0, i, amplitude);
                audio.setSample (1, i, -0.5f * amplitude);
            }
            audio.setSample (0, 36000, 1.2f * amplitude);
            writeWav (temporary.file (name), audio, 48000.0, 16);
        }
    }

    juce::Image draw (const juce::String& before, const juce::String& after) const
    {
        EXPECT_TRUE (lines ("picture " + before + " " + after + " it.png --force")[0].isEmpty());
        return juce::ImageFileFormat::loadFrom (temporary.file ("it.png"));
    }
};

TEST_F (PictureCommand, ShowsBothFilesInTheirLanesAndColours)
{
    const auto picture = draw ("before.wav", "after.wav");
    ASSERT_EQ (picture.getBounds(), Rectangle<int> (1400, 600));

    // Lanes of 840 x 220 pixels with 5 % of room beyond full scale: the first lies above the second.
    const auto pixelAt = [&] (int centre, double position, double amplitude)
    {
        return picture.getPixelAt (80 + juce::roundToInt (840.0 * position),
                                   juce::roundToInt (centre - amplitude * 220.0 / 2.1));
    };
    const auto before = pixelAt (160, 0.25, 0.1), after = pixelAt (435, 0.25, 0.1),
               ground = pixelAt (160, 0.25, 0.92);
    EXPECT_LT (before.getSaturation(), 0.3f) << "grey";
    EXPECT_GT (after.getSaturation(), 0.7f) << "orange";
    EXPECT_LT (ground.getBrightness(), 0.3f);

    for (const auto& [amplitude, isBefore, isAfter] : { std::tuple { 0.7, true, false },
                                                        { 0.45, true, false },
                                                        { 0.3, true, true },
                                                        { -0.1, true, true },
                                                        { -0.3, true, false },
                                                        { -0.45, false, false } })
    {
        EXPECT_EQ (pixelAt (160, 0.2, amplitude), isBefore ? before : ground) << amplitude;
        EXPECT_EQ (pixelAt (435, 0.2, amplitude), isAfter ? after : ground) << amplitude;
        EXPECT_EQ (pixelAt (160, 0.6, amplitude), ground) << amplitude;
    }

    EXPECT_EQ (pixelAt (160, 0.75, 0.7), before) << "one sample is seen too";
    EXPECT_EQ (pixelAt (435, 0.75, 0.4), after);

    // 12 ms about that sample, the second file over the first: in how many columns is a colour at that height?
    const auto inZoom = [&] (double amplitude, juce::Colour colour)
    {
        auto count = 0;
        for (auto x = 980; x < 1370; ++x)
            if (picture.getPixelAt (x, juce::roundToInt (297.2 - amplitude * 495.0 / 2.1)) == colour)
                count += std::abs (x - 1175) < 8 ? 1 : 1000;
        return count;
    };
    EXPECT_TRUE (juce::isPositiveAndBelow (inZoom (0.7, before) - 1, 15)) << "there alone";
    EXPECT_TRUE (juce::isPositiveAndBelow (inZoom (0.3, after) - 1, 15));
    EXPECT_EQ (inZoom (0.7, after), 0);
    EXPECT_GT (inZoom (0.0, after), 300000);
}

TEST_F (PictureCommand, TellsTheLevelsAndTheLoudestMoment)
{
    const auto picture = draw ("before.wav", "after.wav"), same = draw ("before.wav", "before.wav");
    const auto areEqual =
        [] (const juce::Image& a, Rectangle<int> inA, const juce::Image& b, Rectangle<int> inB)
    { return pixels::difference (a.getClippedImage (inA), b.getClippedImage (inB)).isEmpty(); };

    // On the right above each lane: the same for the same file, and others for another.
    const Rectangle<int> first (500, 25, 420, 18), second (500, 300, 420, 18);
    EXPECT_TRUE (areEqual (same, first, picture, first) && areEqual (same, second, picture, first));
    EXPECT_FALSE (areEqual (picture, second, picture, first));

    // Below on the right.
    const Rectangle<int> times (960, 550, 420, 20);
    juce::AudioBuffer<float> early (2, 48000);
    early.clear();
    early.setSample (0, 12000, 1.0f);
    writeWav (temporary.file ("early.wav"), early, 48000.0, 16);
    EXPECT_TRUE (areEqual (same, times, picture, times));
    EXPECT_FALSE (areEqual (draw ("early.wav", "early.wav"), times, picture, times));
}
} // namespace
