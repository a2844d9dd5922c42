#include "editor/OpenEditor.h"

#include <gtest/gtest.h>
#include <LunaBinary.h>

#include <cmath>
#include <tuple>

using juce::Point;
using Events = std::vector<std::string>;

namespace
{
class BandEditor : public testing::Test
{
protected:
    BandEditor() { open.set ("layout", 1); }

    void move (Point<int> position)
    {
        open.window->moveMouse (bands(), position);

        // A busy machine is late with the frame that shows what is under the mouse.
        for (auto frames = 0; frames < 3; ++frames)
            dispatchMessages();
    }

    void click (juce::Rectangle<int> button) { open.window->clickMouse (bands(), button.getCentre()); }

    ThreeBandSplitterEditor& bands() { return open.editor->bandEditor; }

    /** The axis runs from 17 Hz over the logarithm of 22050 / 17, cut to 1297. */
    double exactXOf (double frequency)
    {
        const auto& plot = bands().plot;
        return plot.getX() + plot.getWidth() / std::log10 (1297.0) * std::log10 (frequency / 17.0);
    }

    int xOf (double frequency) { return static_cast<int> (exactXOf (frequency)); }

    OpenEditor open;
};
} // namespace

TEST_F (BandEditor, EndsADragAndHearsNoClickOnceItIsBypassed)
{
    GestureRecorder recorder (open.plugin.parameter ("crossover_low"));
    open.window->pressMouse (bands(), { xOf (160.0), bands().plot.getCentreY() });
    open.set ("enable", 0.0);
    open.window->releaseMouse();
    EXPECT_EQ (recorder.events, (Events { "begin", "end" }));
    click (bands().bands[0].muteBounds);
    EXPECT_EQ (open.plugin.get ("mute_low_band"), 0.0);
}

TEST_F (BandEditor, PaintsItsButtonsByWhatIsOnAndWhatNothingCanSwitch)
{
    const juce::Colour primary (0xff3470b7), ground (0xff141516), inactive (0xff777777), mute (0xffe0624c),
        solo = primary.withRotatedHue (-0.2f);
    const std::vector<std::string> ids { "low_band", "mid_band", "high_band" };

    const auto isDrawn = [&] (const juce::Image& image, juce::Rectangle<int> bounds, const char* label,
                              juce::Colour base, bool isOn, bool isActive, int groundX, bool isHovered)
    {
        const auto isFilled = isOn && isActive;
        auto colour = isActive ? base : inactive;
        colour = isHovered ? colour.brighter() : colour;
        const auto area = bounds.toFloat();
        auto expected = image.createCopy();
        juce::Graphics g (expected);

        // The tint of the band, which runs down the column.
        for (auto y = bounds.getY(); y < bounds.getBottom(); ++y)
        {
            g.setColour (image.getPixelAt (groundX, y));
            g.fillRect (bounds.getX(), y, 20, 1);
        }

        g.setColour (ground.withAlpha (0.5f));
        g.fillEllipse (area);
        g.setColour (colour);

        if (isFilled)
            g.fillEllipse (area);
        else
            g.drawEllipse (area.reduced (0.5f), 1.0f);

        g.setColour (isFilled ? ground : colour);
        g.setFont (juce::FontOptions (14.0f));
        g.drawText (label, bounds, juce::Justification::centred, false);

        if (*label == 0)
        {
            const auto icon =
                juce::Drawable::createFromImageData (LunaBinary::poweroff_svg, LunaBinary::poweroff_svgSize);
            icon->replaceColour (juce::Colours::black, isFilled ? ground : isActive ? primary : inactive);
            icon->drawWithin (g, area.reduced (5.0f), juce::RectanglePlacement::centred, 1.0f);
        }

        // They come as a picture that is blended with what is below, and rounded.
        return pixels::difference (image, expected, bounds, 2).isEmpty();
    };

    const auto expectButtons = [&] (int soloBand, bool isOn, int hovered)
    {
        open.plugin.set ("solo_band", soloBand);

        for (const auto& id : ids)
        {
            open.plugin.set ("mute_" + id, isOn);
            open.plugin.set ("enable_" + id, isOn);
        }

        for (auto i = 0; i < 3; ++i)
        {
            const auto& band = bands().bands[static_cast<size_t> (i)];
            const auto isSolo = soloBand == i, isNone = soloBand == 3;
            const juce::Rectangle<int> buttons[] {
                { 1, 1, 0, 0 }, band.muteBounds, band.soloBounds, band.enableBounds
            };
            move (buttons[hovered + 1].getCentre());
            const auto groundX = band.bounds.getX() + 15;
            EXPECT_TRUE (eventually (
                [&]
                {
                    const auto image = open.pictureOf (bands());
                    return isDrawn (image, band.muteBounds, "M", mute, isOn, isNone, groundX, hovered == 0)
                           && isDrawn (image, band.soloBounds, "S", solo, isSolo, true, groundX, hovered == 1)
                           && isDrawn (image, band.enableBounds, "", primary, isOn, isNone || isSolo, groundX,
                                       hovered == 2);
                }))
                << soloBand << isOn << hovered << i;
        }
    };

    expectButtons (3, true, -1);
    expectButtons (3, false, 0);
    expectButtons (0, true, 1);
    expectButtons (1, true, 2);
    expectButtons (2, false, -1);

    // Bypassed: the frame and the bars alone.
    open.set ("enable", 0.0);
    const auto image = open.pictureOf (bands());
    const auto mid = bands().bands[1];
    EXPECT_EQ (image.getPixelAt (mid.soloBounds.getX() + 10, mid.soloBounds.getY() + 2), ground);
}

TEST_F (BandEditor, DrawsAFrameTwoBarsAndTheSpectrumBehindThem)
{
    const juce::Colour text (0xffb5b5b5), ground (0xff141516);
    const auto plot = bands().plot;
    const auto pixel = [&] (int x, int y)
    {
        dispatchMessages();
        return open.pictureOf (bands()).getPixelAt (x, y);
    };

    for (const auto isOn : { true, false })
    {
        move ({ 1, 1 });
        open.set ("enable", isOn);

        for (const auto& corner : { plot.getTopLeft(), plot.getBottomRight().translated (-1, -1) })
            EXPECT_EQ (pixel (corner.x, corner.y), text);

        for (const auto frequency : { 160.0, 3500.0 })
        {
            const auto x = xOf (frequency), middle = plot.getY() + plot.getHeight() / 2;

            if (isOn)
                move ({ x, middle });

            const auto bar = isOn ? text : text.withMultipliedLightness (0.8f);
            EXPECT_TRUE (eventually ([&] { return open.pictureOf (bands()).getPixelAt (x, middle) == bar; }));
            const auto image = open.pictureOf (bands());
            const auto widthAt = [&] (int y)
            {
                std::vector<int> marks;

                for (auto i = x - 10; i < x + 10; ++i)
                    if (image.getPixelAt (i, y) == bar)
                        marks.push_back (i - x);

                return marks;
            };

            EXPECT_EQ (widthAt (plot.getY() + 4), (std::vector { -1, 0 }));
            EXPECT_EQ (widthAt (middle), (std::vector { -3, -2, -1, 0, 1, 2 }))
                << "a dot of 8, less its soft rim";
        }
    }

    // The axis reaches down to -100 dB.
    open.set ("enable", 1.0);
    const auto x = xOf (300.0), y = plot.getY() + plot.getHeight() / 5;
    const auto above = pixel (x, y - 2), below = pixel (x, y + 2);
    open.plugin.processor.spectrum.magnitudes.fill (0.1f);
    EXPECT_EQ (pixel (x, y - 2), above);
    const auto lit = pixel (x, y + 2);
    EXPECT_NE (lit, below);

    // A tenth of the way to the text's colour, seen through the band's tint of less than a fifth.
    EXPECT_NEAR (lit.getRed() - below.getRed(), 0.1 * 0.82 * (0xb5 - 0x14), 2.0);

    for (const auto frequency : { 20, 50, 100, 200, 500, 1000, 2000, 5000, 10000, 20000 })
    {
        const juce::Rectangle<int> box (juce::roundToInt (exactXOf (frequency)) - 20, plot.getBottom(), 40,
                                        20);
        const auto label =
            frequency < 1000 ? juce::String (frequency) + "Hz" : juce::String (frequency / 1000) + "kHz";
        EXPECT_TRUE (pixels::showsText (open.pictureOf (bands()), box, label, box,
                                        juce::Font (juce::FontOptions (11.0f)), text, ground))
            << frequency;
    }
}

TEST_F (BandEditor, TintsTheBandsAndLightsTheOneUnderTheMouse)
{
    const auto& low = bands().bands[0];
    const auto& mid = bands().bands[1];
    const auto colourAt = [this] (Point<int> position)
    {
        dispatchMessages();
        return open.pictureOf (bands()).getPixelAt (position.x, position.y);
    };

    // Beside labels; a gradient runs down the column.
    const Point<int> places[] { mid.bounds.getTopLeft() + Point (40, 2),
                                mid.bounds.getBottomLeft() + Point (40, -3) };
    open.set ("enable", 0.0);
    const juce::Colour grounds[] { colourAt (places[0]), colourAt (places[1]) };
    open.set ("enable", 1.0);

    const auto expectTints = [&] (float alphaAtTop)
    {
        for (auto i = 0; i < 2; ++i)
        {
            const auto tint = mid.colour.withAlpha (i == 0 ? alphaAtTop : 0.5f * alphaAtTop);
            EXPECT_TRUE (pixels::areNear (colourAt (places[i]), grounds[i].overlaidWith (tint), 3)) << i;
        }
    };

    move (low.bounds.getCentre());
    expectTints (0.2f);

    move (mid.bounds.getCentre());
    expectTints (0.3f);
}

TEST_F (BandEditor, TellsWhatIsUnderTheMouse)
{
    const auto tooltipAt = [this] (Point<int> position)
    {
        move (position);
        return bands().getTooltip();
    };

    const auto& [low, mid, high] = bands().bands;
    const auto general = juce::String ("Band Editor: Change band frequencies by dragging the vertical bars");

    EXPECT_EQ (tooltipAt (low.muteBounds.getCentre()), "Low Band Mute: Toggle the mute of this band");
    EXPECT_EQ (tooltipAt (mid.soloBounds.getCentre()), "Mid Band Solo: Toggle the solo status of this band");
    EXPECT_EQ (tooltipAt (high.enableBounds.getCentre()), "High Band Enable: Toggle the clipper enablement");
    EXPECT_EQ (tooltipAt (bands().highHandleBounds.getCentre()),
               "Mid/High Crossover: Drag to adjust the crossover frequency of the mid and high bands");
    EXPECT_EQ (bands().getMouseCursor(), juce::MouseCursor::LeftRightResizeCursor);
    EXPECT_EQ (tooltipAt ({ 1, 1 }), general);
    EXPECT_EQ (bands().getMouseCursor(), juce::MouseCursor::NormalCursor);

    // The buttons follow the bars, in the middle of their bands.
    open.set ("crossover_low", 1000.0);
    open.set ("crossover_high", 2000.0);
    EXPECT_EQ (tooltipAt ({ (xOf (1000.0) + xOf (2000.0)) / 2, bands().plot.getY() + 20 }),
               "Mid Band Solo: Toggle the solo status of this band");

    move (high.bounds.getCentre());
    open.window->moveMouse (open.editor->inputPanel, { 5, 5 });
    EXPECT_EQ (bands().hoveredBand, &bands().bands[2]) << "keeps its highlight when the mouse has left";

    // Where there is little room, a bar lies over the buttons, and takes the click that looks like theirs.
    bands().setSize (220, 100);
    const auto shared = bands().lowHandleBounds.getIntersection (mid.muteBounds);
    ASSERT_FALSE (shared.isEmpty());
    EXPECT_EQ (tooltipAt (shared.getCentre()),
               "Low/Mid Crossover: Drag to adjust the crossover frequency of the low and mid bands");

    GestureRecorder mute (open.plugin.parameter ("mute_mid_band"));
    GestureRecorder crossover (open.plugin.parameter ("crossover_low"));
    click (shared);
    EXPECT_TRUE (mute.events.empty());
    EXPECT_EQ (crossover.events.front(), "begin");
}
