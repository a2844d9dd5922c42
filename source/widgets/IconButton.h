#pragma once

#include "widgets/LeftClickButton.h"

#include <functional>
#include <memory>

namespace luna
{

/** A button with an icon, which fires on the press and knows a right click. Message thread. */
class IconButton : public LeftClickButton
{
public:
    /** The icon is drawn in black; the data is only read here. */
    IconButton (const char* svgData, size_t svgSize);

    void paintButton (juce::Graphics&, bool isHighlighted, bool isDown) override;

    bool showIconOnlyWhenHot = false;
    std::function<void()> onRightClick;
    std::unique_ptr<juce::Drawable> icon;
    int iconMargin = 5;

protected:
    void rightButtonPressed() override;

private:
    const juce::Drawable& getTintedIcon (juce::Colour);

    /** A copy of the icon in the colour that was drawn last. */
    std::unique_ptr<juce::Drawable> tintedIcon;
    juce::Colour tint;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (IconButton)
};

/** Paints every black of a drawable, whatever its alpha, in another colour, so that antialiased edges change
    too. */
void recolourBlack (juce::Drawable&, juce::Colour);

} // namespace luna
