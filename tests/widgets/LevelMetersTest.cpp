#include "common/ColourIds.h"
#include "look/TessarinLookAndFeel.h"
#include "OffscreenWindow.h"
#include "Pixels.h"
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

    /** The meter for these levels, down a column. */
    Runs draw (double peak, double rms, double heldPeak)
    {
        channel.peak = peak;
        channel.rmsSumSnapshot = static_cast<float> (rms * rms * channel.rmsSamples);
        channel.heldPeak = heldPeak;
        meter.timerCallback();
        return pixels::runs (OffscreenWindow (meter).render(), true, 10);
    }

    tessarin::DLAF shared;
    InputOutputLevelProcessor processor;
    LevelChannel& channel = processor.input.left;
    LevelMeter meter { &channel };
    const juce::uint32 ground = colour (meterBackgroundColourId), bar = colour (meterBarColourId),
                       over = colour (meterOverColourId);
};
} // namespace

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
    EXPECT_EQ (draw (0.5, 0.45, 0.001), (Runs { { 0, ground }, { peak, bar } }))
        << "RMS never stands above the peak";
    meter.setEnabled (false);
    EXPECT_EQ (draw (0.5, 0.1, 0.8), (Runs { { 0, ground } }));
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

TEST_F (LevelMeters, TicksMarkTheMetersScale)
{
    using juce::Justification;
    LevelMeterTicks ticks (&meter);
    ticks.side = 2;
    ticks.ticks = { 0, -6, -30, -60 };
    ticks.setSize (45, 320);

    for (const auto isOn : { true, false })
    {
        ticks.setEnabled (isOn);
        const auto image = OffscreenWindow (ticks).render();
        const auto expected = pixels::drawn (
            image, pixels::black,
            [&] (auto& g)
            {
                g.setColour (juce::Colour (colour (isOn ? textColourId : disabledTextColourId)));
                g.setFont (juce::FontOptions (11.0f));

                for (const auto& [db, y] : { std::pair { 0, 0 }, { -6, 57 }, { -30, 225 }, { -60, 300 } })
                {
                    g.drawText (juce::String (db), 0, y, 45, 20, Justification::centred, false);
                    g.fillRect (0, y + 10, 5, 1);
                    g.fillRect (40, y + 10, 5, 1);
                }
            });
        EXPECT_EQ (pixels::difference (image, expected), Rectangle<int>()) << isOn;
    }
}

TEST_F (LevelMeters, StandBesideTheirScaleAndAboveTheirCaptions)
{
    InputOutputMeters meters (&processor);
    meters.setSize (174, 382);
    juce::String captions;

    for (const auto* caption :
         { &meters.peakCaption, &meters.rmsCaption, &meters.inCaption, &meters.outCaption })
        captions << caption->getText() << caption->getPosition().toString() << " ";

    EXPECT_EQ (captions, "Peak64, 10 RMS64, 25 In10, 357 Out115, 357 ");

    for (size_t i = 0; i < 4; ++i)
    {
        auto& pair = i < 2 ? meters.inputMeters : meters.outputMeters;
        auto& channelMeter = i % 2 == 0 ? pair.leftMeter : pair.rightMeter;
        const auto area = meters.getLocalArea (&pair, channelMeter.getBounds());
        const auto& caption = meters.channelCaptions[i];
        EXPECT_EQ (caption.getText(), i % 2 == 0 ? "L" : "R");
        EXPECT_NEAR (caption.getBounds().getCentreX(), area.getCentreX(), 2) << "but for roundings";
        EXPECT_EQ (caption.getY(), 342);
        EXPECT_EQ (meters.ticks.getBounds().withX (0),
                   Rectangle<int> (0, area.getY() - 10, 45, area.getHeight() + 20));
    }

    EXPECT_EQ (meters.ticks.getX(), 64);
    EXPECT_EQ (meters.ticks.ticks, (juce::Array<int> { 0, -3, -6, -9, -12, -18, -30, -60 }));
}
