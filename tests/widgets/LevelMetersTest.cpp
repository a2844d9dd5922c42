#include "common/ColourIds.h"
#include "OffscreenWindow.h"
#include "Pixels.h"
#include "settings/TessarinLookAndFeel.h"
#include "widgets/InputOutputMeters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace luna::ColourIds;
using namespace luna::temp;
using juce::Rectangle;
using pixels::Runs;

namespace
{
constexpr auto infinity = std::numeric_limits<double>::infinity();
constexpr auto notANumber = std::numeric_limits<double>::quiet_NaN();

double proportionOf (double db)
{
    const auto linear = std::fmin (std::fmax ((db + 60.0) / 60.0, 0.0), 1.0);
    return linear * linear;
}

/** Pixels of a bar in a meter 300 long. */
int lengthOf (double level, double offset = 0.0)
{
    return static_cast<int> (300.0 * proportionOf (20.0 * std::log10 (level) + offset));
}

class LevelMeters : public testing::Test
{
protected:
    LevelMeters()
    {
        processor.prepare (48000.0);
        meter.setSize (20, 300);
    }

    juce::uint32 colour (int id) { return shared.lookAndFeel.findColour (id).getARGB(); }

    /** The meter for these levels, down a column or along a row. */
    Runs draw (double peak, double rms, double heldPeak, bool isColumn = true)
    {
        channel.peak = peak;
        channel.rmsSumSnapshot = static_cast<float> (rms * rms * channel.rmsSamples);
        channel.heldPeak = heldPeak;
        meter.timerCallback();
        return pixels::runs (OffscreenWindow (meter).render(), isColumn, 10);
    }

    tessarin::DLAF shared;
    InputOutputLevelProcessor processor;
    LevelChannel& channel = processor.input.left;
    LevelMeter meter { &channel };
    const juce::uint32 ground = colour (meterBackgroundColourId), bar = colour (meterBarColourId),
                       over = colour (meterOverColourId);
};
} // namespace

TEST (DecibelMeterBase, GivesTheUpperPartOfTheScaleMoreRoom)
{
    DecibelMeterBase meter;

    for (const auto& [db, proportion] : { std::pair { -60.0, 0.0 },
                                          { -100.0, 0.0 },
                                          { -30.0, 0.25 },
                                          { 0.0, 1.0 },
                                          { 6.0, 1.0 },
                                          { notANumber, 0.0 },
                                          { infinity, 1.0 } })
        EXPECT_NEAR (meter.proportionOf (db), proportion, 1.0e-12) << db;

    meter.minimumDecibels = -40.0f;
    meter.skew = 1.0f;
    EXPECT_NEAR (meter.proportionOf (-10.0), 0.75, 1.0e-12);
}

TEST_F (LevelMeters, DrawBarsAndHoldLineWhereTheScaleHasThem)
{
    const auto dark = juce::Colour (bar).darker (0.4f).getARGB();
    const auto hold = static_cast<int> (300.0 - 300.0 * proportionOf (20.0 * std::log10 (0.8)));
    const auto peak = 300 - lengthOf (0.5), rms = 300 - lengthOf (0.1, 3.0);

    EXPECT_EQ (draw (0.5, 0.1, 0.8), (Runs { { 0, ground },
                                             { hold, colour (meterHoldColourId) },
                                             { hold + 1, ground },
                                             { peak, dark },
                                             { rms, bar } }));
    meter.showHold = false;
    EXPECT_EQ (draw (0.5, 0.45, 0.5), (Runs { { 0, ground }, { peak, bar } }))
        << "RMS never stands above the peak";
    meter.showRms = false;
    EXPECT_EQ (draw (0.5, 0.1, 0.8), (Runs { { 0, ground }, { peak, bar } }));
    meter.showRms = true;
    meter.showPeak = false;
    EXPECT_EQ (draw (0.5, 0.1, 0.8), (Runs { { 0, ground }, { rms, bar } }));
    meter.setEnabled (false);
    EXPECT_EQ (draw (0.5, 0.1, 0.8), (Runs { { 0, ground } }));

    meter.setEnabled (true);
    meter.setSize (300, 20);
    EXPECT_EQ (draw (0.5, 0.1, 0.8, false), (Runs { { 0, bar }, { lengthOf (0.1, 3.0), ground } }));
}

TEST_F (LevelMeters, ShowAnOverOnlyAboveFullScaleAndNoHoldLineNearSilence)
{
    EXPECT_EQ (draw (0.5, 0.1, 1.0)[0].second, colour (meterHoldColourId));

    for (const auto held : { 1.0001, 40.0, infinity })
        EXPECT_EQ (draw (0.5, 0.1, held),
                   (Runs { { 0, over }, { 1, ground }, { 300 - lengthOf (0.5), over } }));

    for (const auto held : { 0.005, 0.01, notANumber })
        EXPECT_EQ (draw (0.0, notANumber, held), (Runs { { 0, ground } })) << held;
}

TEST_F (LevelMeters, TicksMarkTheMetersScaleOnTheSideWithoutLabels)
{
    using juce::Justification;
    LevelMeterTicks ticks (&meter);
    ticks.ticks = { 0, -6, -30, -60 };
    ticks.setSize (45, 320);

    for (const auto& [side, justification, isOn] : { std::tuple { 0, Justification::centredLeft, true },
                                                     { 1, Justification::centredRight, true },
                                                     { 2, Justification::centred, true },
                                                     { 2, Justification::centred, false } })
    {
        ticks.side = side;
        ticks.setEnabled (isOn);
        const auto image = OffscreenWindow (ticks).render();
        const auto expected = pixels::drawn (image, pixels::black,
                                             [&, s = side, j = justification, on = isOn] (auto& g)
                                             {
            g.setColour (juce::Colour (colour (on ? textColourId : disabledTextColourId)));
            g.setFont (juce::FontOptions (11.0f));

            for (const auto& [db, y] : { std::pair { 0, 0 }, { -6, 57 }, { -30, 225 }, { -60, 300 } })
            {
                g.drawText (juce::String (db), 0, y, 45, 20, j, false);

                if (s != 0)
                    g.fillRect (0, y + 10, 5, 1);

                if (s != 1)
                    g.fillRect (40, y + 10, 5, 1);
            }
        });
        EXPECT_EQ (pixels::difference (image, expected, image.getBounds()), Rectangle<int>()) << side << isOn;
    }
}

TEST_F (LevelMeters, AClickOnAReadOutOfAPairClearsThePair)
{
    StereoLevelMeters pair (&processor.input, true, true);
    pair.setSize (50, 300);
    OffscreenWindow window (pair);
    auto& [in, out] = processor;

    for (auto* value : { &pair.leftPeakValue, &pair.rightPeakValue, &pair.leftRmsValue, &pair.rightRmsValue })
    {
        in.left.maxPeak = in.right.maxPeak = out.left.maxPeak = 0.5;
        window.clickMouse (*value, { 3, 3 });
        EXPECT_EQ (in.left.maxPeak + in.right.maxPeak, 0.0);
        EXPECT_EQ (out.left.maxPeak, 0.5);
    }

    InputOutputMeters silent (nullptr);
    silent.onMaxClick();
    silent.inputMeters.leftMeter.timerCallback();
}

TEST_F (LevelMeters, TheBlockPlacesPairsScaleAndCaptions)
{
    InputOutputMeters meters (&processor);

    // 154 by 362 within the margins: every division cuts.
    meters.setSize (174, 382);
    EXPECT_EQ (meters.inputMeters.getBounds(), Rectangle<int> (10, 10, 49, 327));
    EXPECT_EQ (meters.outputMeters.getBounds(), Rectangle<int> (115, 10, 49, 327));
    EXPECT_EQ (meters.inCaption.getBounds(), Rectangle<int> (10, 357, 49, 15));
    EXPECT_EQ (meters.outCaption.getBounds(), Rectangle<int> (115, 357, 49, 15));

    for (size_t i = 0; i < 4; ++i)
    {
        const auto x = std::array { 10, 34, 115, 139 }[i];
        EXPECT_EQ (meters.channelCaptions[i].getBounds(), Rectangle<int> (x, 342, 25, 15));
    }

    // The scale's labels reach over the meter's ends.
    const auto neighbour =
        meters.getLocalArea (&meters.inputMeters, meters.inputMeters.rightMeter.getBounds());
    EXPECT_EQ (neighbour.getRight(), 59);
    EXPECT_EQ (meters.ticks.getBounds(),
               Rectangle<int> (64, neighbour.getY() - 10, 45, neighbour.getHeight() + 20));
    EXPECT_EQ (meters.peakCaption.getPosition(), juce::Point<int> (64, 10));
    EXPECT_EQ (meters.rmsCaption.getPosition(), juce::Point<int> (64, 25));
    EXPECT_EQ (meters.ticks.ticks, (juce::Array<int> { 0, -3, -6, -9, -12, -18, -30, -60 }));
    juce::String captions;

    for (const auto* caption : { &meters.peakCaption, &meters.rmsCaption, &meters.inCaption,
                                 &meters.outCaption, &meters.channelCaptions[0], &meters.channelCaptions[1],
                                 &meters.channelCaptions[2], &meters.channelCaptions[3] })
        captions << (caption->isVisible() ? caption->getText() : "-") << " ";

    EXPECT_EQ (captions, "Peak RMS In Out L R L R ");

    meters.showPeakValues = false;
    meters.resized();
    EXPECT_EQ (meters.rmsCaption.getY(), 10);
    EXPECT_EQ (meters.inputMeters.leftRmsValue.getY(), 0);
    EXPECT_FALSE (meters.inputMeters.leftPeakValue.isVisible());
}
