#include "SaturatorGraph.h"

#include "common/ColourIds.h"
#include "common/Decibels.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <array>
#include <cmath>

namespace luna
{

SaturatorGraph::SaturatorGraph()
{
    setTitle ("Clipper shape");
    addAndMakeVisible (background);
    readColours();
    startTimer (33);
}

void SaturatorGraph::timerCallback()
{
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
}

void SaturatorGraph::colourChanged()
{
    readColours();
}

// A new parent may bring another look and feel, which is not announced.
void SaturatorGraph::parentHierarchyChanged()
{
    readColours();
}

void SaturatorGraph::enablementChanged()
{
    repaint();
}

void SaturatorGraph::readColours()
{
    curveColour = findColour (ColourIds::primaryColourId);
    backgroundColour = findColour (ColourIds::backgroundColourId);
    lineColour = findColour (ColourIds::textColourId);
    disabledLineColour = findColour (ColourIds::disabledTextColourId);
    background.repaint();
    repaint();
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
    repaint();
}

void SaturatorGraph::mouseDown (const juce::MouseEvent& event)
{
    if (menuEnabled && event.mods.isRightButtonDown())
        showMenu();
}

void SaturatorGraph::showMenu()
{
    constexpr auto decibelItem = 1;
    constexpr auto amplitudeItem = 2;

    juce::PopupMenu menu;
    menu.addItem (decibelItem, "Decibels");
    menu.addItem (amplitudeItem, "Amplitude");

    // Inside the editor, so that the menu has its scale; the window around it belongs to the host.
    juce::Component* editor = findParentComponentOfClass<juce::AudioProcessorEditor>();
    const auto options = juce::PopupMenu::Options()
                             .withParentComponent (editor != nullptr ? editor : getTopLevelComponent())
                             .withMousePosition()
                             .withDeletionCheck (*this);

    menu.showMenuAsync (options,
                        [graph = SafePointer<SaturatorGraph> (this)] (int item)
                        {
        if (graph == nullptr || item == 0)
            return;

        const auto mode = item == amplitudeItem ? ViewMode::amplitude : ViewMode::decibels;
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

    drawnSaturator = saturator;

    if (saturator == nullptr || plot.isEmpty())
        return;

    if (viewMode == ViewMode::amplitude)
        rebuildAmplitudePaths();
    else
        rebuildDecibelPaths();

    finishPaths();
}

void SaturatorGraph::addColumn (int column, float input, float output)
{
    const auto x = static_cast<float> (plot.getX() + column);
    const auto outputY = getYOf (output);
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
    const auto start = static_cast<double> (amplitudeRange.start);
    const auto size = static_cast<double> (amplitudeRange.end) - start;
    auto isBelowZero = true;

    fillPath.startNewSubPath (left, middle);

    for (auto i = 0; i < plot.getWidth(); ++i)
    {
        // The product first, and in double precision: exactly 0 in the middle column.
        const auto input = static_cast<float> (size * i / plot.getWidth() + start);
        addColumn (i, input, saturator->processSample (input));

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
    const auto start = static_cast<double> (decibelRange.start);
    const auto size = static_cast<double> (decibelRange.end) - start;

    fillPath.startNewSubPath (static_cast<float> (plot.getX()), bottom);

    for (auto i = 0; i < plot.getWidth(); ++i)
    {
        const auto input = static_cast<float> (size * i / plot.getWidth() + start);
        const auto output = saturator->processSample (decibels::toGain (input));
        addColumn (i, input, decibels::fromGain (output));
    }

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

    if (saturator != drawnSaturator || saturator->seenChangeCount != saturator->changeCount)
    {
        saturator->seenChangeCount = saturator->changeCount;
        rebuildPaths();
    }

    if (const auto area = getLevelArea (saturator->envelope); ! area.isEmpty())
    {
        const juce::Graphics::ScopedSaveState state (g);
        g.reduceClipRegion (area);
        g.setColour (lineColour.withAlpha (0.5f));
        g.fillPath (fillPath);
    }

    g.setColour (lineColour.withAlpha (0.2f));
    g.fillPath (identityStroke);

    if (compact)
        g.fillPath (referenceStroke);

    g.setColour (curveColour);
    g.fillPath (curveStroke);
}

} // namespace luna
