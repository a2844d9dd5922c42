#include "CategoryStrip.h"

namespace tessarin
{

namespace
{
/** Two lie beside the options and "Random"; more than four would take too much from the table. */
constexpr auto fewestRows = 2;
constexpr auto mostRows = 4;

/** Of one badge, in pixels; the tooltip has the whole text. */
constexpr auto greatestWidth = 200;

int heightOfRows (int numRows)
{
    return numRows * CategoryStrip::rowHeight + (numRows - 1) * CategoryStrip::gap;
}
} // namespace

CategoryStrip::CategoryStrip()
{
    setTitle ("Categories");
    setFocusContainerType (FocusContainerType::focusContainer);

    addAndMakeVisible (viewport);
    viewport.setViewedComponent (&content, false);
    viewport.setScrollBarsShown (true, false);
    viewport.setWantsKeyboardFocus (false);
    viewport.setSingleStepSizes (rowHeight + gap, rowHeight + gap);
}

void CategoryStrip::setCategories (const juce::StringArray& categories)
{
    badges.clear();

    for (const auto& category : categories)
    {
        auto* badge = badges.add (std::make_unique<CategoryBadge> (category));
        badge->setTooltip ("Category Filter: Show only presets with a category of '" + category
                           + "'. Multiple filters can be selected. Right click to clear filters.");
        badge->onLeftClick = [badge] { badge->setSelected (! badge->selected, juce::sendNotification); };
        badge->onRightClick = [this] { clearSelection(); };
        badge->onChange = [this]
        {
            if (onChange)
                onChange();
        };
        content.addAndMakeVisible (badge);
    }

    viewport.setViewPosition (0, 0);
    resized();
}

juce::StringArray CategoryStrip::getSelection() const
{
    juce::StringArray selection;

    for (const auto* badge : badges)
        if (badge->selected)
            selection.add (badge->text);

    return selection;
}

void CategoryStrip::clearSelection()
{
    for (auto* badge : badges)
        badge->setSelected (false, juce::dontSendNotification);

    if (onChange)
        onChange();
}

int CategoryStrip::getIdealHeight (int width)
{
    return juce::jlimit (heightOfRows (fewestRows), heightOfRows (mostRows), layOut (width));
}

void CategoryStrip::resized()
{
    viewport.setBounds (getLocalBounds());

    auto width = getWidth();
    auto height = layOut (width);

    if (height > getHeight())
    {
        width = juce::jmax (0, width - viewport.getScrollBarThickness() - gap);
        height = layOut (width);
    }

    content.setSize (width, height);
}

/** Places the badges and returns the height that they take. */
int CategoryStrip::layOut (int width)
{
    juce::Point<int> position;

    for (auto* badge : badges)
    {
        const auto badgeWidth = juce::jmin (badge->getIdealWidth(), greatestWidth, width);

        if (position.x > 0 && position.x + badgeWidth > width)
            position = { 0, position.y + rowHeight + gap };

        badge->setBounds (position.x, position.y, badgeWidth, rowHeight);
        position.x += badgeWidth + gap;
    }

    return position.y + rowHeight;
}

void CategoryStrip::focusOfChildComponentChanged (FocusChangeType)
{
    const auto* focused = getCurrentlyFocusedComponent();

    if (focused == nullptr || ! content.isParentOf (focused))
        return;

    const auto lowest = juce::jmax (0, focused->getBottom() - viewport.getHeight());
    viewport.setViewPosition (
        0, juce::jlimit (lowest, juce::jmax (lowest, focused->getY()), viewport.getViewPositionY()));
}

} // namespace tessarin
