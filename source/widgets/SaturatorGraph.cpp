#include "SaturatorGraph.h"

#include "common/ColourIds.h"
#include "common/Decibels.h"
#include "widgets/ParameterMenu.h"
#include "widgets/PressKey.h"
#include "widgets/RepaintDifference.h"

#include <array>
#include <cmath>
#include <utility>

namespace luna
{

SaturatorGraph::SaturatorGraph()
{
    setTitle ("Clipper shape");
    setWantsKeyboardFocus (true);
    setMouseClickGrabsKeyboardFocus (false);
    setHasFocusOutline (true);
    addAndMakeVisible (background);
    readColours();
    startTimer (33);
}

void SaturatorGraph::timerCallback()
{
    if (! isEnabled() || isStale)
        return;

    if (saturator == nullptr)
    {
        if (saturator != std::exchange (drawnSaturator, nullptr))
            repaint();

        return;
    }

    if (updateCurve())
        repaint();

    const auto before = std::exchange (levelArea, getLevelArea (saturator->envelope));

    if (before != levelArea)
        repaintDifference (*this, before, levelArea);
}

void SaturatorGraph::refresh()
{
    isStale = true;
    repaint();
}

void SaturatorGraph::resized()
{
    constexpr auto smallestFullWidth = 100;
    constexpr auto margin = 20;

    compact = getWidth() < smallestFullWidth;
    plot = compact ? getLocalBounds()
                   : juce::Rectangle<int> (margin, margin, juce::jmax (0, getWidth() - 2 * margin),
                                           juce::jmax (0, getHeight() - 2 * margin));
    background.setBounds (getLocalBounds());
    rebuildPaths();
    isStale = true;
}

void SaturatorGraph::readColours()
{
    curveColour = findColour (ColourIds::primaryColourId);
    backgroundColour = findColour (ColourIds::backgroundColourId);
    lineColour = findColour (ColourIds::textColourId);
    disabledLineColour = findColour (ColourIds::disabledTextColourId);
    background.repaint();
    invalidatePictures();
    refresh();
}

void SaturatorGraph::invalidatePictures()
{
    fillPicture.invalidate();
    linePicture.invalidate();
}

void SaturatorGraph::releasePictures()
{
    fillPicture.release();
    linePicture.release();
}

juce::String SaturatorGraph::getTooltip()
{
    const auto own = SettableTooltipClient::getTooltip();
    return own.isNotEmpty() ? own : background.SettableTooltipClient::getTooltip();
}

void SaturatorGraph::setViewMode (ViewMode newMode)
{
    viewMode = newMode;

    if (viewMode == ViewMode::amplitude)
    {
        amplitudeRange = { -1.2f, 1.2f };
    }
    else
    {
        decibelRange = { -30.0f, 6.0f };
        decibelStep = 6;
    }

    rebuildPaths();
    background.repaint();
    refresh();
}

void SaturatorGraph::mouseDown (const juce::MouseEvent& event)
{
    if (menuEnabled && event.mods.isRightButtonDown())
        showMenu (juce::Rectangle<int>().withPosition (event.getScreenPosition()));
}

bool SaturatorGraph::keyPressed (const juce::KeyPress& key)
{
    if (! menuEnabled || ! isPress (key))
        return false;

    showMenu (getScreenBounds());
    return true;
}

void SaturatorGraph::showMenu (juce::Rectangle<int> areaOnScreen)
{
    constexpr auto decibelItem = 1;
    constexpr auto amplitudeItem = 2;

    juce::PopupMenu menu;
    menu.addItem (decibelItem, "Decibels", true, viewMode == ViewMode::decibels);
    menu.addItem (amplitudeItem, "Amplitude", true, viewMode == ViewMode::amplitude);

    menu.showMenuAsync (ParameterMenu::getOptionsFor (*this).withTargetScreenArea (areaOnScreen),
                        [graph = SafePointer<SaturatorGraph> (this)] (int item)
                        {
                            if (graph == nullptr || item == 0)
                                return;

                            const auto mode =
                                item == amplitudeItem ? ViewMode::amplitude : ViewMode::decibels;
                            graph->setViewMode (mode);

                            if (graph->onViewModeChange != nullptr)
                                graph->onViewModeChange (mode);
                        });
}

const juce::NormalisableRange<float>& SaturatorGraph::getRange() const noexcept
{
    return viewMode == ViewMode::amplitude ? amplitudeRange : decibelRange;
}

float SaturatorGraph::proportionOf (float value) const noexcept
{
    const auto& range = getRange();

    // A curve that is being changed on another thread may give anything.
    return std::isnan (value) ? 0.0f : range.convertTo0to1 (range.getRange().clipValue (value));
}

float SaturatorGraph::getYOf (float value) const noexcept
{
    // The plot is square: its width and left edge serve both axes.
    return static_cast<float> (plot.getX())
           + static_cast<float> (plot.getWidth()) * (1.0f - proportionOf (value));
}

float SaturatorGraph::getXOf (float value) const noexcept
{
    return static_cast<float> (plot.getX()) + static_cast<float> (plot.getWidth()) * proportionOf (value);
}

juce::Rectangle<int> SaturatorGraph::getLevelArea (float envelope) const noexcept
{
    if (viewMode == ViewMode::amplitude)
    {
        const auto end = static_cast<int> (getXOf (envelope));
        const auto start = plot.getX() + plot.getRight() - end;
        return { start, plot.getY(), juce::jmax (0, end - start), plot.getHeight() };
    }

    return plot.withWidth (static_cast<int> (static_cast<float> (plot.getWidth())
                                             * proportionOf (decibels::fromGain (envelope))));
}

void SaturatorGraph::rebuildPaths()
{
    for (auto* path : { &curvePath, &fillPath, &identityPath, &referencePath, &curveStroke, &identityStroke,
                        &referenceStroke })
        path->clear();

    invalidatePictures();
    drawnSaturator = saturator;
    outputs.clear();

    if (saturator == nullptr || plot.isEmpty())
        return;

    computeOutputs (outputs);

    if (viewMode == ViewMode::amplitude)
        rebuildAmplitudePaths();
    else
        rebuildDecibelPaths();

    finishPaths();
}

float SaturatorGraph::getInputOf (int column) const noexcept
{
    const auto start = static_cast<double> (getRange().start);
    const auto size = static_cast<double> (getRange().end) - start;

    // The product first, and in double precision: exactly 0 in the middle column of the amplitude view.
    return static_cast<float> (size * column / plot.getWidth() + start);
}

void SaturatorGraph::computeOutputs (std::vector<float>& results) const
{
    results.resize (static_cast<size_t> (plot.getWidth()));

    for (auto column = 0; column < plot.getWidth(); ++column)
    {
        const auto input = getInputOf (column);
        results[static_cast<size_t> (column)] =
            viewMode == ViewMode::amplitude
                ? saturator->processSample (input)
                : decibels::fromGain (saturator->processSample (decibels::toGain (input)));
    }
}

/** Whether the curve is another one than the paths show. Most changes of a section leave it as it is. */
bool SaturatorGraph::updateCurve()
{
    const auto isAnother = saturator != drawnSaturator;

    const auto changeCount = saturator->changeCount.load (std::memory_order_acquire);

    if (! isAnother && saturator->seenChangeCount == changeCount)
        return false;

    saturator->seenChangeCount = changeCount;
    computeOutputs (newOutputs);

    if (! isAnother && newOutputs == outputs)
        return false;

    rebuildPaths();
    return true;
}

void SaturatorGraph::addColumn (int column, float input)
{
    const auto x = static_cast<float> (plot.getX() + column);
    const auto outputY = getYOf (outputs[static_cast<size_t> (column)]);
    const auto inputY = getYOf (input);

    if (column == 0)
    {
        curvePath.startNewSubPath (x, outputY);
        identityPath.startNewSubPath (x, inputY);
    }
    else
    {
        curvePath.lineTo (x, outputY);
        identityPath.lineTo (x, inputY);
    }

    fillPath.lineTo (x, outputY);
}

void SaturatorGraph::rebuildAmplitudePaths()
{
    const auto left = static_cast<float> (plot.getX());
    const auto right = static_cast<float> (plot.getRight());
    const auto middle = getYOf (0.0f);
    auto isBelowZero = true;

    fillPath.startNewSubPath (left, middle);

    for (auto i = 0; i < plot.getWidth(); ++i)
    {
        const auto input = getInputOf (i);
        addColumn (i, input);

        if (isBelowZero && input >= 0.0f)
        {
            isBelowZero = false;
            fillPath.lineTo (left + static_cast<float> (i), middle);
            fillPath.closeSubPath();
            fillPath.startNewSubPath (getXOf (0.0f), middle);
        }
    }

    fillPath.lineTo (right, middle);
    fillPath.closeSubPath();

    addReferenceLine (1.0f);
    addReferenceLine (-1.0f);
}

void SaturatorGraph::rebuildDecibelPaths()
{
    const auto bottom = getYOf (decibelRange.start);

    fillPath.startNewSubPath (static_cast<float> (plot.getX()), bottom);

    for (auto i = 0; i < plot.getWidth(); ++i)
        addColumn (i, getInputOf (i));

    fillPath.lineTo (static_cast<float> (plot.getRight()), bottom);
    fillPath.closeSubPath();

    // At +1 dB: the line marks the number 1 in both views.
    addReferenceLine (1.0f);
}

void SaturatorGraph::addReferenceLine (float value)
{
    const auto y = getYOf (value);
    referencePath.startNewSubPath (static_cast<float> (plot.getX()), y);
    referencePath.lineTo (static_cast<float> (plot.getRight()), y);
}

void SaturatorGraph::finishPaths()
{
    constexpr std::array identityDashes { 5.0f, 5.0f };
    constexpr std::array referenceDashes { 1.0f, 1.0f };

    juce::PathStrokeType (1.0f).createDashedStroke (identityPath, identityPath, identityDashes.data(), 2);
    juce::PathStrokeType (0.5f).createDashedStroke (referencePath, referencePath, referenceDashes.data(), 2);

    const juce::PathStrokeType outline (0.5f);
    outline.createStrokedPath (identityStroke, identityPath);
    outline.createStrokedPath (referenceStroke, referencePath);
    juce::PathStrokeType (compact ? 2.0f : 3.0f).createStrokedPath (curveStroke, curvePath);
}

void SaturatorGraph::paintOverChildren (juce::Graphics& g)
{
    if (! isEnabled() || saturator == nullptr)
        return;

    if (std::exchange (isStale, false) || saturator != drawnSaturator)
    {
        updateCurve();
        levelArea = getLevelArea (saturator->envelope);
    }

    if (! levelArea.isEmpty())
    {
        const juce::Graphics::ScopedSaveState state (g);
        g.reduceClipRegion (levelArea);
        fillPicture.draw (g);
    }

    linePicture.draw (g);
}

void SaturatorGraph::paintFill (juce::Graphics& g) const
{
    g.setColour (lineColour.withAlpha (0.5f));
    g.fillPath (fillPath);
}

void SaturatorGraph::paintLines (juce::Graphics& g) const
{
    g.setColour (lineColour.withAlpha (0.2f));
    g.fillPath (identityStroke);

    if (compact)
        g.fillPath (referenceStroke);

    g.setColour (curveColour);
    g.fillPath (curveStroke);
}

} // namespace luna
