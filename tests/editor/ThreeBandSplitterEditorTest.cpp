#include "editor/OpenEditor.h"
#include "widgets/Pixels.h"

#include <gtest/gtest.h>

#include <cmath>

using juce::Point;
using Events = std::vector<std::string>;

namespace
{
class BandEditor : public testing::Test
{
protected:
    BandEditor() { open.set ("layout", 1); }

    void move (Point<int> position) { open.window->moveMouse (bands(), position); }

    void click (juce::Rectangle<int> button) { open.window->clickMouse (bands(), button.getCentre()); }

    ThreeBandSplitterEditor& bands() { return open.editor->bandEditor; }

    /** The axis runs from 17 Hz over the logarithm of 22050 / 17, cut to 1297. */
    int xOf (double frequency)
    {
        const auto& plot = bands().plot;
        return static_cast<int> (plot.getX()
                                 + plot.getWidth() / std::log10 (1297.0) * std::log10 (frequency / 17.0));
    }

    OpenEditor open;
};
} // namespace

TEST_F (BandEditor, DragsTheCrossoversInOneGesture)
{
    for (const auto& [id, from, to] :
         { std::tuple { "crossover_low", 160.0, 400.0 }, std::tuple { "crossover_high", 3500.0, 7000.0 } })
    {
        GestureRecorder recorder (open.plugin.parameter (id));
        const auto y = bands().plot.getCentreY();

        open.window->pressMouse (bands(), { xOf (from), y });
        open.window->dragMouse (bands(), { xOf (to), y });
        open.window->releaseMouse();

        // A pixel is a step of 0.7 %.
        EXPECT_NEAR (open.plugin.get (id) / to, 1.0, 0.01);
        ASSERT_EQ (recorder.events.size(), 3u);
        EXPECT_EQ (recorder.events.front(), "begin");
        EXPECT_EQ (recorder.events.back(), "end");
        move ({ 0, 0 });
        EXPECT_NEAR (bands().lowCrossoverX, xOf (open.plugin.get ("crossover_low")), 1);
    }

    // A bypass in the middle of a drag must not leave the host with an open gesture.
    GestureRecorder recorder (open.plugin.parameter ("crossover_low"));
    open.window->pressMouse (bands(), { xOf (400.0), bands().plot.getCentreY() });
    open.set ("enable", 0.0);
    open.window->releaseMouse();
    EXPECT_EQ (recorder.events, (Events { "begin", "end" }));
}

TEST_F (BandEditor, CollapsesBandsThatTheBarsLeaveNoRoom)
{
    open.set ("crossover_low", 1000.0);
    open.set ("crossover_high", 2000.0);
    bands().updateBandBounds();
    const auto& [low, mid, high] = bands().bands;

    EXPECT_EQ (low.bounds, bands().plot.withWidth (xOf (1000.0) - bands().plot.getX()));
    EXPECT_EQ (mid.bounds.getX(), xOf (1000.0));
    EXPECT_EQ (mid.bounds.getRight(), xOf (2000.0));
    EXPECT_EQ (high.bounds.getRight(), bands().plot.getRight());
    EXPECT_EQ (mid.soloBounds, (juce::Rectangle<int> (mid.bounds.getX() + (mid.bounds.getWidth() - 20) / 2,
                                                      bands().plot.getY() + 10, 20, 20)));
    EXPECT_EQ (mid.muteBounds, mid.soloBounds.translated (-25, 0));
    EXPECT_EQ (mid.enableBounds, mid.soloBounds.translated (25, 0));
    EXPECT_EQ (bands().lowHandleBounds.getX(), xOf (1000.0) - 10);

    // Bars that have passed each other.
    ThreeBandSplitterEditor crossed (open.plugin.processor.spectrum, open.plugin.processor.parameters,
                                     "crossover_high", "crossover_low");
    crossed.setBounds (bands().getBounds());
    EXPECT_EQ (crossed.bands[1].bounds.getWidth(), 0);
    EXPECT_EQ (crossed.bands[1].soloBounds.getX(), crossed.bands[1].bounds.getX() - 10);
}

TEST_F (BandEditor, PaintsWhatIsOnWhatIsOffAndWhatNothingCanSwitch)
{
    const auto colourAt = [this] (juce::Rectangle<int> button, Point<int> offset)
    {
        return open.window->render().getPixelAt (bands().getX() + button.getX() + offset.x,
                                                 bands().getY() + button.getY() + offset.y);
    };

    // Inside the rim, beside the label and the icon; and on the rim itself.
    const Point<int> fill (10, 2), rim (10, 0);
    const auto isFilled = [&] (juce::Rectangle<int> button, juce::Colour colour)
    { return pixels::areNear (colourAt (button, fill), colour, 6); };
    const auto& [low, mid, high] = bands().bands;

    open.set ("mute_low_band", 1.0);
    open.set ("enable_high_band", 0.0);
    EXPECT_TRUE (isFilled (low.muteBounds, bands().muteColour));
    EXPECT_FALSE (isFilled (mid.muteBounds, bands().muteColour));
    EXPECT_TRUE (isFilled (mid.enableBounds, bands().enableColour));
    EXPECT_FALSE (isFilled (high.enableBounds, bands().enableColour));

    // Another band's solo takes the buttons their colours.
    open.set ("solo_band", 1.0);
    EXPECT_TRUE (isFilled (mid.soloBounds, bands().soloColour));
    EXPECT_TRUE (isFilled (mid.enableBounds, bands().enableColour));
    EXPECT_FALSE (isFilled (low.muteBounds, bands().muteColour));
    EXPECT_FALSE (isFilled (low.enableBounds, bands().enableColour));

    const auto hueOf = [&] (juce::Rectangle<int> button) { return colourAt (button, rim).getSaturation(); };
    EXPECT_LT (hueOf (low.muteBounds), 0.5f * bands().muteColour.getSaturation());

    // Bypassed: the frame and the bars alone.
    open.set ("enable", 0.0);
    const auto ground = colourAt (mid.bounds, { 40, 40 });
    EXPECT_EQ (colourAt (mid.soloBounds, fill), ground);
    EXPECT_NE (colourAt (bands().lowHandleBounds, { 10, 5 }), ground);
    EXPECT_EQ (colourAt (bands().plot, { 0, 20 }), bands().gridColour);
}

TEST_F (BandEditor, TintsTheBandsAndLightsTheOneUnderTheMouse)
{
    const auto& low = bands().bands[0];
    const auto& mid = bands().bands[1];
    const auto colourAt = [this] (Point<int> position)
    { return open.window->render().getPixelAt (bands().getX() + position.x, bands().getY() + position.y); };

    // Beside grid lines and labels; a gradient runs down the column.
    const auto top = mid.bounds.getTopLeft() + Point (40, 2);
    const auto bottom = mid.bounds.getBottomLeft() + Point (40, -3);
    const auto handle = Point (bands().lowHandleBounds.getCentreX(), bands().plot.getY() + 20);
    open.set ("enable", 0.0);
    const auto groundAtTop = colourAt (top), groundAtBottom = colourAt (bottom);
    open.set ("enable", 1.0);

    const auto expectTints = [&] (float alphaAtTop, float alphaAtBottom)
    {
        EXPECT_TRUE (
            pixels::areNear (colourAt (top), groundAtTop.overlaidWith (mid.colour.withAlpha (alphaAtTop)), 3))
            << colourAt (top).toString();
        EXPECT_TRUE (pixels::areNear (colourAt (bottom),
                                      groundAtBottom.overlaidWith (mid.colour.withAlpha (alphaAtBottom)), 3))
            << colourAt (bottom).toString();
    };

    move (low.bounds.getCentre());
    expectTints (0.2f, 0.1f);
    EXPECT_TRUE (pixels::areNear (colourAt (handle), bands().gridColour.withMultipliedLightness (0.8f), 2));

    move (mid.bounds.getCentre());
    expectTints (0.3f, 0.15f);

    move (bands().lowHandleBounds.getCentre());
    EXPECT_TRUE (pixels::areNear (colourAt (handle), bands().gridColour, 2));
}

TEST_F (BandEditor, ClicksMuteSoloAndEnableTheBands)
{
    const std::vector<std::string> ids { "low_band", "mid_band", "high_band" };

    for (size_t i = 0; i < ids.size(); ++i)
    {
        const auto& band = bands().bands[i];
        const auto index = static_cast<double> (i);
        GestureRecorder mute (open.plugin.parameter ("mute_" + ids[i]));
        GestureRecorder enable (open.plugin.parameter ("enable_" + ids[i]));

        click (band.muteBounds);
        click (band.muteBounds);
        EXPECT_EQ (mute.events, (Events { "begin", "=1", "end", "begin", "=0", "end" }));

        click (band.enableBounds);
        EXPECT_EQ (enable.events, (Events { "begin", "=0", "end" }));

        // From the band before, if any, to this one in one step.
        GestureRecorder solo (open.plugin.parameter ("solo_band"));
        click (band.soloBounds);
        EXPECT_EQ (open.plugin.get ("solo_band"), index);
        EXPECT_EQ (solo.events.size(), 3u);
    }

    click (bands().bands[2].soloBounds);
    EXPECT_EQ (open.plugin.get ("solo_band"), 3.0);

    open.set ("enable", 0.0);
    click (bands().bands[0].muteBounds);
    EXPECT_EQ (open.plugin.get ("mute_low_band"), 0.0);
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
    EXPECT_EQ (tooltipAt ({ 1, 1 }), general);

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
