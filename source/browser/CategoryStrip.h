#pragma once

#include "browser/CategoryBadge.h"

namespace tessarin
{

/** The badges of all categories in rows; what does not fit scrolls. Message thread. */
class CategoryStrip final : public juce::Component
{
public:
    CategoryStrip();

    /** Replaces all badges; none of the new ones is selected. */
    void setCategories (const juce::StringArray& categories);

    /** The texts of the selected badges, in badge order. */
    [[nodiscard]] juce::StringArray getSelection() const;

    /** For as many rows as the badges take at this width, within limits. */
    [[nodiscard]] int getIdealHeight (int width);

    void resized() override;

    /** Brings the badge that the keyboard reached into view. */
    void focusOfChildComponentChanged (FocusChangeType) override;

    juce::OwnedArray<CategoryBadge> badges;

    /** The selection has changed. */
    std::function<void()> onChange;

    static constexpr auto rowHeight = 20;
    static constexpr auto gap = 5;

private:
    void clearSelection();
    int layOut (int width);

    juce::Component content;
    juce::Viewport viewport;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CategoryStrip)
};

} // namespace tessarin
