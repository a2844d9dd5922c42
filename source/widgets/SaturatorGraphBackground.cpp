#include "SaturatorGraph.h"

namespace luna
{

SaturatorGraph::GraphBackground::GraphBackground (SaturatorGraph& owner) : graph (owner)
{
    setInterceptsMouseClicks (false, false);
    setAccessible (false);
    setOpaque (true);
    setBufferedToImage (true);
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

    const auto paintEachValue = [&] (void (GraphBackground::*paintValue) (juce::Graphics&, float) const)
    {
        if (graph.viewMode == ViewMode::amplitude)
        {
            for (const auto value : { -1.0f, 0.0f, 1.0f })
                (this->*paintValue) (g, value);

            return;
        }

        for (auto db = graph.decibelRange.start; db <= graph.decibelRange.end;
             db += static_cast<float> (graph.decibelStep))
            (this->*paintValue) (g, db);
    };

    const auto colour = isEnabled() ? graph.lineColour : graph.disabledLineColour;
    g.setColour (colour);
    g.setFont (11.0f);
    paintEachValue (&GraphBackground::paintLabels);

    g.setColour (colour.withAlpha (0.3f));
    paintEachValue (&GraphBackground::paintLines);
}

void SaturatorGraph::GraphBackground::paintLines (juce::Graphics& g, float value) const
{
    const auto& plot = graph.plot;
    g.fillRect (plot.getX(), juce::roundToInt (graph.getYOf (value)), plot.getWidth(), 1);
    g.fillRect (juce::roundToInt (graph.getXOf (value)), plot.getY(), 1, plot.getHeight());
}

void SaturatorGraph::GraphBackground::paintLabels (juce::Graphics& g, float value) const
{
    constexpr auto width = 20;
    constexpr auto height = 16;
    constexpr auto topLabelY = 3;

    const juce::String text (juce::roundToInt (value));
    const auto paintLabel = [&] (int x, int y)
    { g.drawText (text, x, y, width, height, juce::Justification::centred, false); };

    paintLabel (juce::roundToInt (graph.getXOf (value)) - width / 2, topLabelY);
    paintLabel (graph.plot.getRight(), juce::roundToInt (graph.getYOf (value)) - height / 2);
}

} // namespace luna
