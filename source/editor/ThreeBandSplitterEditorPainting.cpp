// What the band editor paints over the spectrum, and when it has to.

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "common/Sections.h"
#include "ThreeBandSplitterEditor.h"
#include "widgets/IconStore.h"

#include <LunaBinary.h>

#include <utility>

ThreeBandSplitterEditor::Overlay ThreeBandSplitterEditor::getOverlay() const
{
    const auto stateOf = [] (const Band& band) { return 2 * band.isMuted() + band.isEnabled(); };
    const auto hoveredIndex = hoveredBand != nullptr ? hoveredBand->index : -1;
    const auto focusedIndex = getFocusedSpot() != nullptr ? focusedPlace : -1;

    // In the tenths of a hertz that are shown.
    const auto shownFrequency = [this] (size_t bar)
    {
        const auto* frequency =
            showsFrequency (bar) ? state->getRawParameterValue (bar == 0 ? lowCrossoverId : highCrossoverId)
                                 : nullptr;
        return frequency != nullptr ? juce::roundToInt (10.0f * frequency->load()) : -1;
    };

    return { lowCrossoverX,
             highCrossoverX,
             bands[0].getSoloBand(),
             stateOf (bands[0]),
             stateOf (bands[1]),
             stateOf (bands[2]),
             hoveredHandle,
             hoveredIndex,
             hoverMute,
             hoverSolo,
             hoverEnable,
             focusedIndex,
             shownFrequency (0),
             shownFrequency (1),
             isEnabled(),
             static_cast<int> (gridColour.getARGB()) };
}

void ThreeBandSplitterEditor::timerCallback()
{
    refreshBandBounds();

    const auto before = std::exchange (overlay, getOverlay());

    if (overlay != before)
        refresh();
    else
        SpectrumAnalyser::timerCallback();
}

void ThreeBandSplitterEditor::visibilityChanged()
{
    if (! isVisible())
        overlayPicture.release();
}

void ThreeBandSplitterEditor::paintOverChildren (juce::Graphics& g)
{
    refreshBandBounds();

    if (const auto now = getOverlay(); now != std::exchange (paintedOverlay, now))
        overlayPicture.invalidate();

    overlayPicture.draw (g);
}

void ThreeBandSplitterEditor::paintBands (juce::Graphics& g) const
{
    if (isEnabled())
        for (const auto& band : bands)
            paintBand (g, band);

    g.setColour (gridColour);
    g.drawRect (plot, 1);

    paintHandle (g, lowHandleBounds, hoveredHandle == 0);
    paintHandle (g, highHandleBounds, hoveredHandle == 1);

    for (const size_t bar : { 0u, 1u })
        if (showsFrequency (bar))
            paintFrequency (g, bar);

    paintFocus (g);
}

void ThreeBandSplitterEditor::paintBand (juce::Graphics& g, const Band& band) const
{
    const auto isHovered = &band == hoveredBand;
    const auto bounds = band.bounds.toFloat();

    g.setGradientFill (juce::ColourGradient::vertical (
        band.colour.withAlpha (isHovered ? 0.3f : 0.2f), bounds.getY(),
        band.colour.withAlpha (isHovered ? 0.15f : 0.1f), bounds.getBottom()));
    g.fillRect (bounds);

    const auto solo = band.getSoloBand();
    const auto isAnySolo = solo < Solo::none;
    const auto isSolo = solo == band.index;

    paintButton (g,
                 { band.muteBounds, "M", muteColour, band.isMuted(), ! isAnySolo, isHovered && hoverMute });
    paintButton (g, { band.soloBounds, "S", soloColour, isSolo, true, isHovered && hoverSolo });
    paintButton (g, { band.enableBounds,
                      {},
                      enableColour,
                      band.isEnabled(),
                      ! isAnySolo || isSolo,
                      isHovered && hoverEnable });
}

void ThreeBandSplitterEditor::paintButton (juce::Graphics& g, const ButtonLook& button) const
{
    constexpr auto iconMargin = 5;
    const auto area = button.bounds.toFloat();
    const auto colour = button.active ? button.colour : inactiveColour;
    const auto drawColour = button.hovered ? colour.brighter() : colour;
    const auto isFilled = button.active && button.on;

    g.setColour (buttonBackgroundColour.withAlpha (0.5f));
    g.fillEllipse (area);
    g.setColour (drawColour);

    if (isFilled)
        g.fillEllipse (area);
    else
        g.drawEllipse (area.reduced (0.5f), 1.0f);

    if (button.label.isNotEmpty())
    {
        g.setColour (isFilled ? buttonBackgroundColour : drawColour);
        g.setFont (juce::FontOptions (luna::FontHeights::control));
        g.drawText (button.label, button.bounds, juce::Justification::centred, false);
        return;
    }

    const auto iconColour = isFilled ? buttonBackgroundColour : button.active ? enableColour : inactiveColour;
    luna::IconStore::getInstance()
        ->get (LunaBinary::poweroff_svg, static_cast<size_t> (LunaBinary::poweroff_svgSize), iconColour)
        .drawWithin (g, area.reduced (iconMargin), juce::RectanglePlacement::centred, 1.0f);
}

void ThreeBandSplitterEditor::paintHandle (juce::Graphics& g, juce::Rectangle<int> bounds,
                                           bool isHovered) const
{
    constexpr auto dotSize = 8;
    const auto centre = bounds.getX() + bounds.getWidth() / 2;
    const auto middle = plot.getY() + plot.getHeight() / 2;

    g.setColour (gridColour.withMultipliedLightness (isHovered ? 1.0f : 0.8f));
    g.fillRect (centre - 1, plot.getY(), 2, plot.getHeight());
    g.fillRoundedRectangle (
        juce::Rectangle<int> (centre - dotSize / 2, middle - dotSize / 2, dotSize, dotSize).toFloat(), 8.0f);
}

void ThreeBandSplitterEditor::paintFrequency (juce::Graphics& g, size_t bar) const
{
    const auto area = getReadoutBounds (bar);

    g.setColour (buttonBackgroundColour.withAlpha (0.8f));
    g.fillRoundedRectangle (area.toFloat(), 3.0f);
    g.setColour (labelColour);
    g.setFont (juce::FontOptions (luna::FontHeights::control));
    g.drawText (steps[bar] ? steps[bar]->getText() : juce::String(), area, juce::Justification::centred,
                false);
}

void ThreeBandSplitterEditor::paintFocus (juce::Graphics& g) const
{
    constexpr auto ring = 2.0f, barWidth = 14.0f;
    const auto* spot = getFocusedSpot();

    if (spot == nullptr || ! isEnabled())
        return;

    const auto bounds = getBounds (*spot).toFloat();
    g.setColour (findColour (luna::ColourIds::highlightedTextColourId));

    if (spot->kind == Spot::bar)
        g.drawRoundedRectangle (bounds.withSizeKeepingCentre (barWidth, bounds.getHeight() - ring), 3.0f,
                                ring);
    else
        g.drawEllipse (bounds.expanded (ring), ring);
}
