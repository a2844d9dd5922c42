#include "ThreeBandSplitterEditor.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "common/ParameterIds.h"
#include "common/Rounding.h"
#include "common/Sections.h"

#include <cmath>
#include <utility>

namespace
{
constexpr auto handleWidth = 20;
constexpr auto buttonSize = 20;

bool isOn (const juce::RangedAudioParameter* parameter)
{
    return parameter != nullptr && roundToSwitch (parameter->getValue());
}
} // namespace

bool ThreeBandSplitterEditor::Band::isMuted() const
{
    return isOn (muteParameter);
}

bool ThreeBandSplitterEditor::Band::isEnabled() const
{
    return isOn (enableParameter);
}

int ThreeBandSplitterEditor::Band::getSoloBand() const
{
    return soloParameter != nullptr
               ? roundToChoice (soloParameter->convertFrom0to1 (soloParameter->getValue()))
               : Solo::none;
}

ThreeBandSplitterEditor::ThreeBandSplitterEditor (const SpectrumData& spectrum,
                                                  juce::AudioProcessorValueTreeState& stateToUse,
                                                  juce::String lowId, juce::String highId)
    : SpectrumAnalyser (spectrum),
      state (&stateToUse),
      lowCrossoverId (std::move (lowId)),
      highCrossoverId (std::move (highId))
{
    minimumDecibels = -100;
    layers = spectrumLayer | frequencyLabelLayer;
    fillAlpha = 0.1f;
    setTitle ("Bands");
    setWantsKeyboardFocus (true);
    setMouseClickGrabsKeyboardFocus (false);

    for (size_t i = 0; i < numBands; ++i)
    {
        bands[i].index = static_cast<int> (i);
        bands[i].muteParameter = state->getParameter (sectionTable[i].idOf (ParameterIds::mutePrefix));
        bands[i].soloParameter = state->getParameter (ParameterIds::soloBand);
        bands[i].enableParameter = state->getParameter (sectionTable[i].idOf (ParameterIds::enablePrefix));
    }

    for (const size_t bar : { 0u, 1u })
        if (auto* crossover = getParameter ({ Spot::bar, bar }))
            steps[bar].emplace (*crossover);

    for (const auto& id : getShownParameters())
        state->addParameterListener (id, this);

    readBandColours();
}

ThreeBandSplitterEditor::~ThreeBandSplitterEditor()
{
    endDrag();

    for (const auto& id : getShownParameters())
        state->removeParameterListener (id, this);
}

juce::StringArray ThreeBandSplitterEditor::getShownParameters() const
{
    juce::StringArray ids { lowCrossoverId, highCrossoverId, ParameterIds::soloBand };

    for (size_t i = 0; i < numBands; ++i)
        for (const auto* prefix : { ParameterIds::enablePrefix, ParameterIds::mutePrefix })
            ids.add (sectionTable[i].idOf (prefix));

    return ids;
}

void ThreeBandSplitterEditor::readBandColours()
{
    const auto primary = findColour (luna::ColourIds::primaryColourId);

    muteColour = findColour (luna::ColourIds::warningColourId);
    enableColour = primary;
    soloColour = primary.withRotatedHue (-0.2f);
    inactiveColour = findColour (luna::ColourIds::disabledTextColourId);
    buttonBackgroundColour = findColour (luna::ColourIds::backgroundColourId);

    for (size_t i = 0; i < numBands; ++i)
        bands[i].colour = primary.withRotatedHue (sectionTable[i].hueRotation);

    overlayPicture.invalidate();
}

//======================================================================================================================
// Places

double ThreeBandSplitterEditor::getExactBarPosition (const juce::String& crossoverId) const
{
    const auto* frequency = state->getRawParameterValue (crossoverId);

    if (frequency == nullptr)
        return plot.getX();

    const auto decadesUp = std::log10 (static_cast<double> (frequency->load()) / minFrequency);
    return plot.getX() + plot.getWidth() / getDecades() * decadesUp;
}

int ThreeBandSplitterEditor::getBarPosition (const juce::String& crossoverId) const
{
    return static_cast<int> (getExactBarPosition (crossoverId));
}

juce::Rectangle<int> ThreeBandSplitterEditor::getBounds (const Spot& spot) const
{
    const auto& band = bands[spot.index];

    return spot.kind == Spot::bar    ? (spot.index == 0 ? lowHandleBounds : highHandleBounds)
           : spot.kind == Spot::mute ? band.muteBounds
           : spot.kind == Spot::solo ? band.soloBounds
                                     : band.enableBounds;
}

juce::Rectangle<int> ThreeBandSplitterEditor::getReadoutBounds (size_t bar) const
{
    constexpr auto width = 64, height = 20, gap = 6;
    const auto x = bar == 0 ? lowCrossoverX : highCrossoverX;
    const auto hasRoom = x + gap + width <= plot.getRight();
    return { hasRoom ? x + gap : x - gap - width, plot.getBottom() - height - 2, width, height };
}

juce::RangedAudioParameter* ThreeBandSplitterEditor::getParameter (const Spot& spot) const
{
    const auto& band = bands[spot.index];

    return spot.kind == Spot::bar ? state->getParameter (spot.index == 0 ? lowCrossoverId : highCrossoverId)
           : spot.kind == Spot::mute ? band.muteParameter
           : spot.kind == Spot::solo ? band.soloParameter
                                     : band.enableParameter;
}

const ThreeBandSplitterEditor::Spot* ThreeBandSplitterEditor::getSpotAt (juce::Point<int> position) const
{
    for (const auto isBar : { true, false })
        for (const auto& spot : spots)
            if ((spot.kind == Spot::bar) == isBar && getBounds (spot).contains (position))
                return &spot;

    return nullptr;
}

void ThreeBandSplitterEditor::updateBandBounds()
{
    boundsAreStale = false;
    lowCrossoverX = getBarPosition (lowCrossoverId);
    highCrossoverX = getBarPosition (highCrossoverId);

    const auto placeBand = [this] (Band& band, int left, int width)
    {
        band.bounds = { left, plot.getY(), juce::jmax (0, width), plot.getHeight() };

        constexpr auto step = buttonSize + 5;
        const auto x = left + (band.bounds.getWidth() - buttonSize) / 2;
        band.soloBounds = { x, plot.getY() + 10, buttonSize, buttonSize };
        band.muteBounds = band.soloBounds.translated (-step, 0);
        band.enableBounds = band.soloBounds.translated (step, 0);
    };

    placeBand (bands[0], juce::jmin (plot.getX(), lowCrossoverX), lowCrossoverX - plot.getX());
    placeBand (bands[1], juce::jmin (lowCrossoverX, highCrossoverX), highCrossoverX - lowCrossoverX);
    placeBand (bands[2], highCrossoverX, plot.getRight() - highCrossoverX);

    const juce::Rectangle<int> handle (0, plot.getY(), handleWidth, plot.getHeight());
    lowHandleBounds = handle.withX (lowCrossoverX - handleWidth / 2);
    highHandleBounds = handle.withX (highCrossoverX - handleWidth / 2);
}

//======================================================================================================================
// Mouse

void ThreeBandSplitterEditor::mouseMove (const juce::MouseEvent& event)
{
    const auto position = event.getPosition();

    // The wheel's own button moves nothing, and would lose the bar that it has moved.
    if (position == wheelPosition)
        return;

    wheelPosition = nowhere;
    hoveredBand = nullptr;
    hoveredHandle = -1;
    hoverMute = hoverSolo = hoverEnable = false;

    if (! isEnabled())
        return;

    refreshBandBounds();

    if (! plot.contains (position))
    {
        setMouseCursor (juce::MouseCursor::NormalCursor);
        return;
    }

    // The bars lie over the buttons.
    if (lowHandleBounds.contains (position))
        hoveredHandle = 0;
    else if (highHandleBounds.contains (position))
        hoveredHandle = 1;

    if (hoveredHandle >= 0)
    {
        setMouseCursor (juce::MouseCursor::LeftRightResizeCursor);
        return;
    }

    for (auto& band : bands)
    {
        if (! band.bounds.contains (position))
            continue;

        hoveredBand = &band;
        hoverMute = band.muteBounds.contains (position);
        hoverSolo = band.soloBounds.contains (position);
        hoverEnable = band.enableBounds.contains (position);
    }

    setMouseCursor (juce::MouseCursor::PointingHandCursor);
}

// The band keeps its highlight: the mouse often leaves only to come back.
void ThreeBandSplitterEditor::mouseExit (const juce::MouseEvent&)
{
    if (! isEnabled())
        return;

    hoveredHandle = -1;
    wheelPosition = nowhere;
    setMouseCursor (juce::MouseCursor::NormalCursor);
}

void ThreeBandSplitterEditor::mouseDown (const juce::MouseEvent& event)
{
    if (! isEnabled())
        return;

    refreshBandBounds();
    const auto* spot = getSpotAt (event.getPosition());

    if (event.mods.isRightButtonDown())
    {
        endDrag();

        if (spot != nullptr)
            showMenu (*spot, event.getScreenPosition());
    }
    else if (hoveredHandle >= 0)
        beginDrag (event);
    else if (spot != nullptr && spot->kind != Spot::bar && hoveredBand != nullptr)
        press (*spot);
}

void ThreeBandSplitterEditor::beginDrag (const juce::MouseEvent& event)
{
    endDrag();
    const auto isLow = hoveredHandle == 0;
    draggedCrossover = getParameter ({ Spot::bar, isLow ? 0u : 1u });

    if (draggedCrossover == nullptr)
        return;

    // A slow drag is about what the bar has, and not about where on it the mouse is.
    const auto exactX = getExactBarPosition (isLow ? lowCrossoverId : highCrossoverId);
    dragX = event.mods.isShiftDown() ? static_cast<float> (exactX) : event.position.x;
    drag.begin (event);
    draggedCrossover->beginChangeGesture();
}

void ThreeBandSplitterEditor::mouseDrag (const juce::MouseEvent& event)
{
    if (! isEnabled() || draggedCrossover == nullptr || plot.isEmpty())
        return;

    constexpr auto fineSpeed = 0.1f;
    dragX += drag.move (event).x * (event.mods.isShiftDown() ? fineSpeed : 1.0f);

    const auto decadesUp = (static_cast<double> (dragX) - plot.getX()) / (plot.getWidth() / getDecades());
    const auto frequency = static_cast<float> (minFrequency * std::pow (10.0, decadesUp));

    // The parameter's range limits the frequency; a bar may pass the other one.
    draggedCrossover->setValueNotifyingHost (draggedCrossover->convertTo0to1 (frequency));
}

void ThreeBandSplitterEditor::mouseUp (const juce::MouseEvent& event)
{
    endDrag();

    if (drag.isOn())
        drag.end (event.source, drag.getStart());
}

/** Also where the mouse cannot: a host waits for the end of each gesture that it was told of. */
void ThreeBandSplitterEditor::endDrag()
{
    if (auto* dragged = std::exchange (draggedCrossover, nullptr))
        dragged->endChangeGesture();
}

void ThreeBandSplitterEditor::mouseDoubleClick (const juce::MouseEvent& event)
{
    if (isEnabled() && hoveredHandle >= 0 && event.mods.isLeftButtonDown())
        if (auto& hovered = steps[static_cast<size_t> (hoveredHandle)])
            hovered->reset();
}

/** The bar under the mouse keeps the wheel when it moves away from there, until the mouse moves. */
void ThreeBandSplitterEditor::mouseWheelMove (const juce::MouseEvent& event,
                                              const juce::MouseWheelDetails& wheel)
{
    if (! isEnabled() || hoveredHandle < 0)
        SpectrumAnalyser::mouseWheelMove (event, wheel);
    else if (auto& hovered = steps[static_cast<size_t> (hoveredHandle)])
    {
        wheelPosition = event.getPosition();
        hovered->wheelMoved (event, wheel);
    }
}

void ThreeBandSplitterEditor::enablementChanged()
{
    if (! isEnabled())
        endDrag();

    SpectrumAnalyser::enablementChanged();
}

//======================================================================================================================
// Tooltips

juce::String ThreeBandSplitterEditor::getButtonTooltip (const Band& band) const
{
    return sectionTable[static_cast<size_t> (band.index)].nameOf (
        hoverMute   ? "Mute: Toggle the mute of this band"
        : hoverSolo ? "Solo: Toggle the solo status of this band"
                    : "Enable: Toggle the clipper enablement");
}

juce::String ThreeBandSplitterEditor::getTooltip()
{
    if (hoveredBand != nullptr && (hoverMute || hoverSolo || hoverEnable))
        return getButtonTooltip (*hoveredBand);

    if (hoveredHandle == 0)
        return "Low/Mid Crossover: Drag to adjust the crossover frequency of the low and mid bands";

    if (hoveredHandle == 1)
        return "Mid/High Crossover: Drag to adjust the crossover frequency of the mid and high bands";

    return "Band Editor: Change band frequencies by dragging the vertical bars";
}
