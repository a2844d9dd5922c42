// How a section's panel arranges its controls, from the width of a whole window down to a narrow column.

#include "MultiModeClipperEditor.h"

using juce::FlexBox;
using juce::FlexItem;

namespace
{
constexpr auto smallestWideWidth = 551;
constexpr auto smallestStackedWidth = 260;
constexpr auto smallestCompactWidth = 200;

constexpr auto rowHeight = 20.0f;
constexpr auto knobWidth = 60.0f;
constexpr auto knobHeight = 95.0f;

FlexBox makeBox (FlexBox::Direction direction,
                 FlexBox::JustifyContent justification = FlexBox::JustifyContent::flexStart)
{
    FlexBox box;
    box.flexDirection = direction;
    box.justifyContent = justification;
    return box;
}

FlexItem below (float gap)
{
    return FlexItem().withMargin ({ 0.0f, 0.0f, gap, 0.0f });
}

/** Takes what the rows leave. */
FlexItem makeSpacer (float gapBelow)
{
    auto spacer = below (gapBelow);
    spacer.flexGrow = 1.0f;
    spacer.flexShrink = 1.0f;
    return spacer;
}

FlexItem makeRow (juce::Component& component, float height, float gapBelow = 0.0f)
{
    return FlexItem (component).withHeight (height).withMargin ({ 0.0f, 0.0f, gapBelow, 0.0f });
}

FlexItem makeRow (FlexBox& box, float height, float gapBelow = 0.0f)
{
    return FlexItem (box).withHeight (height).withMargin ({ 0.0f, 0.0f, gapBelow, 0.0f });
}
} // namespace

void MultiModeClipperEditor::layoutContent()
{
    const auto width = getWidth();
    const auto content = getContentBounds();

    enableButton.setBounds (width - padding - 25, 15, 25, 20);
    linkButton.setBounds (width - padding - 55, 15, 25, 20);

    modeLabel.setVisible (width >= smallestStackedWidth);
    modeLabel.setJustificationType (width >= smallestWideWidth ? juce::Justification::centred
                                                               : juce::Justification::centredLeft);

    if (width >= smallestWideWidth)
        layOutWide (content);
    else if (width >= smallestStackedWidth)
        layOutStacked (content);
    else if (width >= smallestCompactWidth)
        layOutCompact (content);
    else
        layOutNarrow (content);
}

/** The graph beside one column of controls. */
void MultiModeClipperEditor::layOutWide (juce::Rectangle<int> content)
{
    auto modeGroup = makeBox (FlexBox::Direction::column);
    modeGroup.items = { makeRow (modeLabel, rowHeight), makeRow (modeBox, rowHeight) };

    auto controls = makeBox (FlexBox::Direction::column, FlexBox::JustifyContent::spaceAround);
    controls.items = { makeRow (modeGroup, 2.0f * rowHeight), makeRow (thresholdSlider, knobHeight),
                       makeRow (makeupSlider, knobHeight), makeRow (shapeSlider, knobHeight) };

    const auto side = static_cast<float> (content.getHeight());
    auto row = makeBox (FlexBox::Direction::row, FlexBox::JustifyContent::spaceBetween);
    row.items = { FlexItem (graph).withWidth (side).withHeight (side).withMargin (
                      { 0.0f, 20.0f, 0.0f, 0.0f }),
                  FlexItem (controls).withFlex (1.0f) };
    row.performLayout (content);
}

/** The graph above a row with the mode and a row with three knobs. */
void MultiModeClipperEditor::layOutStacked (juce::Rectangle<int> content)
{
    auto knobs = makeBox (FlexBox::Direction::row, FlexBox::JustifyContent::spaceAround);

    for (auto* slider : { &thresholdSlider, &shapeSlider, &makeupSlider })
        knobs.items.add (FlexItem (*slider).withWidth (knobWidth).withHeight (knobHeight));

    auto modeRow = makeBox (FlexBox::Direction::row);
    modeRow.items = { FlexItem (modeLabel).withWidth (60.0f).withHeight (rowHeight),
                      FlexItem (modeBox).withFlex (1.0f).withHeight (rowHeight) };

    auto column = makeBox (FlexBox::Direction::column);
    column.items = { makeSpacer (20.0f), makeRow (modeRow, rowHeight, 20.0f), makeRow (knobs, knobHeight) };
    column.performLayout (content);

    graph.setSize (100, 100);
    fitGraph (column.items.getReference (0));

    // As wide as the graph.
    const auto row = column.items.getReference (1).currentBounds;
    modeRow.performLayout (
        row.withX (static_cast<float> (graph.getX())).withWidth (static_cast<float> (graph.getWidth())));
}

/** The graph above the mode, two knobs, and the shape below them. */
void MultiModeClipperEditor::layOutCompact (juce::Rectangle<int> content)
{
    auto knobs = makeBox (FlexBox::Direction::row, FlexBox::JustifyContent::spaceAround);
    knobs.items = { FlexItem (thresholdSlider).withWidth (knobWidth),
                    FlexItem (makeupSlider).withWidth (knobWidth) };

    auto column = makeBox (FlexBox::Direction::column);
    column.items = { makeSpacer (10.0f), makeRow (modeBox, rowHeight, 10.0f),
                     makeRow (knobs, knobHeight, 10.0f), makeRow (shapeSlider, knobHeight) };
    column.performLayout (content);

    graph.setSize (10, 10);
    fitGraph (column.items.getReference (0));
}

/** One column. */
void MultiModeClipperEditor::layOutNarrow (juce::Rectangle<int> content)
{
    auto column = makeBox (FlexBox::Direction::column);
    column.items = { makeSpacer (10.0f), makeRow (modeBox, rowHeight, 10.0f),
                     makeRow (thresholdSlider, knobHeight, 10.0f), makeRow (shapeSlider, knobHeight, 10.0f),
                     makeRow (makeupSlider, knobHeight) };
    column.performLayout (content);

    graph.setSize (10, 10);
    fitGraph (column.items.getReference (0));
}

/** The largest square in the middle of the room that the spacer keeps; a square's size must be set before. */
void MultiModeClipperEditor::fitGraph (FlexItem& spacer)
{
    graph.setBoundsToFit (spacer.currentBounds.toNearestInt(), juce::Justification::centred, false);
}
