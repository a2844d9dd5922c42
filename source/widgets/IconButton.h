#pragma once

#include "widgets/LeftClickButton.h"

#include <functional>

namespace luna
{

/** A button with an icon, which fires on the press and knows a right click. Message thread. */
class IconButton : public LeftClickButton
{
public:
    /** The icon is drawn in black; the data outlives the button. */
    IconButton (const char* svgData, size_t svgSize);

    void paintButton (juce::Graphics&, bool isHighlighted, bool isDown) override;

    bool showIconOnlyWhenHot = false;
    std::function<void()> onRightClick;
    int iconMargin = 5;

protected:
    void rightButtonPressed() override;

private:
    const char* const svgData;
    const size_t svgSize;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (IconButton)
};

} // namespace luna
