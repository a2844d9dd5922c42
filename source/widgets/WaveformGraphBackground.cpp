#include "WaveformGraph.h"

namespace luna
{

WaveformGraph::GraphBackground::GraphBackground (WaveformGraph& owner) : graph (owner)
{
    setInterceptsMouseClicks (false, false);
    setAccessible (false);

    // Not buffered: to blend an image of this size costs many times what the few lines and labels do.
}

void WaveformGraph::GraphBackground::enablementChanged()
{
    repaint();
}

juce::String WaveformGraph::GraphBackground::getTooltip()
{
    const auto own = SettableTooltipClient::getTooltip();
    return own.isNotEmpty() ? own : graph.SettableTooltipClient::getTooltip();
}

void WaveformGraph::GraphBackground::paint (juce::Graphics& g)
{
    constexpr auto labelHeight = 20;
    constexpr auto labelMargin = 5;
    constexpr juce::uint8 lineAlpha = 0x1a;

    // Nine frames of ten, only some columns are painted anew.
    const auto showsLabels = g.getClipBounds().getRight() > getWidth() - graph.labelWidth;

    if (showsLabels)
        g.setFont (11.0f);

    for (const auto tick : graph.ticks)
    {
        const auto y = graph.getYOf (static_cast<float> (tick));

        if (showsLabels)
        {
            g.setColour (graph.lineColour);
            g.drawText (juce::String (tick), 0, y - labelHeight / 2, getWidth() - labelMargin, labelHeight,
                        juce::Justification::centredRight, false);
        }

        g.setColour (graph.lineColour.withAlpha (lineAlpha));
        g.fillRect (0, y, getWidth() - graph.labelWidth, 1);
    }
}

} // namespace luna
