#pragma once

#include "browser/CategoryBadge.h"

namespace tessarin
{

/** Two badges side by side, one of which is selected: at first the left one. Message thread. */
class FilterOptionsToggle final : public juce::Component
{
public:
    FilterOptionsToggle (const juce::String& leftText, const juce::String& rightText);

    [[nodiscard]] bool isLeftSelected() const { return left.selected; }

    /** In pixels, for both texts. */
    [[nodiscard]] int getIdealWidth() const;

    void resized() override;

    CategoryBadge left;
    CategoryBadge right;

    /** The selection has moved. */
    std::function<void()> onChange;

private:
    void select (bool leftOne);

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (FilterOptionsToggle)
};

} // namespace tessarin
