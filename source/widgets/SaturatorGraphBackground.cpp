#include "SaturatorGraph.h"

namespace luna
{

SaturatorGraph::GraphBackground::GraphBackground (SaturatorGraph& owner) : graph (owner)
{
    setInterceptsMouseClicks (false, false);
    setAccessible (false);
    setOpaque (true);
    bufferToPixels (*this, PixelPicture::Parts::any, [&owner] { owner.releasePictures(); });
}

void SaturatorGraph::GraphBackground::enablementChanged()
{
    repaint();
}

juce::String SaturatorGraph::GraphBackground::getTooltip()
{
    const auto own = SettableTooltipClient::getTooltip();
    return own.isNotEmpty() ? own : graph.SettableTooltipClient::getTooltip();
}

void SaturatorGraph::GraphBackground::paint (juce::Graphics& g)
{
    g.fillAll (graph.backgroundColour);

    if (graph.compact)
        return;

    const auto paintEachValue = [&] (void (GraphBackground::*paintValue) (juce::Graphics&, int) const)
    {
        const auto isAmplitude = graph.viewMode == ViewMode::amplitude;
        const auto first = isAmplitude ? -1 : juce::roundToInt (graph.decibelRange.start);
        const auto last = isAmplitude ? 1 : juce::roundToInt (graph.decibelRange.end);

        for (auto value = first; value <= last; value += isAmplitude ? 1 : graph.decibelStep)
            (this->*paintValue) (g, value);
    };

    const auto colour = isEnabled() ? graph.lineColour : graph.disabledLineColour;
    g.setColour (colour);
    g.setFont (11.0f);
    paintEachValue (&GraphBackground::paintLabels);

    g.setColour (colour.withAlpha (0.3f));
    paintEachValue (&GraphBackground::paintLines);
}

void SaturatorGraph::GraphBackground::paintLines (juce::Graphics& g, int value) const
{
    const auto& area = graph.plot;
    const auto position = positionOf (value);
    g.fillRect (area.getX(), position.y, area.getWidth(), 1);
    g.fillRect (position.x, area.getY(), 1, area.getHeight());
}

void SaturatorGraph::GraphBackground::paintLabels (juce::Graphics& g, int value) const
{
    constexpr auto width = 20;
    constexpr auto height = 16;
    constexpr auto topLabelY = 3;

    const auto position = positionOf (value);
    const auto paintLabel = [&] (int x, int y)
    { g.drawText (juce::String (value), x, y, width, height, juce::Justification::centred, false); };

    paintLabel (position.x - width / 2, topLabelY);
    paintLabel (graph.plot.getRight(), position.y - height / 2);
}

juce::Point<int> SaturatorGraph::GraphBackground::positionOf (int value) const
{
    const auto number = static_cast<float> (value);
    return { juce::roundToInt (graph.getXOf (number)), juce::roundToInt (graph.getYOf (number)) };
}

} // namespace luna
