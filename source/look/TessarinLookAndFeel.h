#pragma once

#include "look/LunaLibLookAndFeel.h"

namespace tessarin
{

/** The product's look: the theme's colours, the knob and the tree's triangles. One object serves all editors
    of a process. Message thread. */
class TessarinLookAndFeel : public luna::LunaLibLookAndFeel
{
public:
    /** Starts with the theme "Default". */
    TessarinLookAndFeel();

    /** Reads an embedded theme and fills the colour table; an unknown name turns everything to the fault's
        colour. The caller tells its components. */
    void setTheme (const juce::String& name);

    /** Resolves a key such as "background.panel"; never fails. See `ThemeResolver::getColour`. */
    [[nodiscard]] juce::Colour getThemeColour (const juce::String& path) const;

    /** Draws the knob at fixed coordinates about (30, 33), for a slider of 60 by 95, whatever rectangle is
        given. */
    void drawRotarySlider (juce::Graphics&, int x, int y, int width, int height, float position,
                           float rotaryStartAngle, float rotaryEndAngle, juce::Slider&) override;
    int getSliderThumbRadius (juce::Slider&) override;
    void drawLinearSlider (juce::Graphics&, int x, int y, int width, int height, float position,
                           float minPosition, float maxPosition, juce::Slider::SliderStyle,
                           juce::Slider&) override;
    juce::Slider::SliderLayout getSliderLayout (juce::Slider&) override;

    void drawTreeviewPlusMinusBox (juce::Graphics&, const juce::Rectangle<float>& area,
                                   juce::Colour background, bool isOpen, bool isMouseOver) override;

    int getTreeViewIndentSize (juce::TreeView&) override { return 12; }

    void drawPopupMenuSectionHeader (juce::Graphics&, const juce::Rectangle<int>& area,
                                     const juce::String& sectionName) override;

    /** For what does not draw its focus itself: the ring that buttons have. */
    std::unique_ptr<juce::FocusOutline> createFocusOutlineForComponent (juce::Component&) override;

    juce::String themeName;

    /** The parsed document; void for an unknown theme. */
    juce::var theme;

private:
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (TessarinLookAndFeel)
};

/** The default look and feel: holds the one object that all editors of a process share. It is JUCE's default
    while it lives, since JUCE asks only that for typefaces. */
struct DLAF
{
    DLAF();
    ~DLAF();

    TessarinLookAndFeel lookAndFeel;

private:
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (DLAF)
};

} // namespace tessarin
