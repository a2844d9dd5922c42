#pragma once

#include "widgets/MusicGridBase.h"
#include "widgets/Panel.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** The font and the drawing of plain controls: flat fills with a border of one pixel and a radius of 3,
    brighter under the mouse, darker while pressed, in the primary colour while on, and with a ring in the
    highlighted text's colour for the keyboard's focus. Disabled controls have colours of their own, never
    alpha. Message thread. */
class LunaLibLookAndFeel : public juce::LookAndFeel_V4,
                           public Panel::LookAndFeelMethods,
                           public MusicGridBase::LookAndFeelMethods
{
public:
    LunaLibLookAndFeel();

    /** One typeface, whatever font was asked for. */
    juce::Typeface::Ptr getTypefaceForFont (const juce::Font&) override;

    void drawPanelBackground (juce::Graphics&, Panel&) override;

    void drawButtonBackground (juce::Graphics&, juce::Button&, const juce::Colour&, bool isHighlighted,
                               bool isDown) override;
    void drawButtonText (juce::Graphics&, juce::TextButton&, bool isHighlighted, bool isDown) override;
    juce::Font getTextButtonFont (juce::TextButton&, int buttonHeight) override;

    void drawComboBox (juce::Graphics&, int width, int height, bool isDown, int buttonX, int buttonY,
                       int buttonW, int buttonH, juce::ComboBox&) override;
    juce::Font getComboBoxFont (juce::ComboBox&) override;
    void positionComboBoxText (juce::ComboBox&, juce::Label&) override;
    juce::Label* createComboBoxTextBox (juce::ComboBox&) override;

    juce::PopupMenu::Options getOptionsForComboBoxPopupMenu (juce::ComboBox&, juce::Label&) override;

    void drawPopupMenuBackgroundWithOptions (juce::Graphics&, int width, int height,
                                             const juce::PopupMenu::Options&) override;
    void drawPopupMenuItem (juce::Graphics&, const juce::Rectangle<int>& area, bool isSeparator,
                            bool isActive, bool isHighlighted, bool isTicked, bool hasSubMenu,
                            const juce::String& text, const juce::String& shortcutKeyText,
                            const juce::Drawable* icon, const juce::Colour* textColour) override;
    void getIdealPopupMenuItemSize (const juce::String& text, bool isSeparator, int standardItemHeight,
                                    int& idealWidth, int& idealHeight) override;
    void getIdealPopupMenuSectionHeaderSizeWithOptions (const juce::String& text, int standardItemHeight,
                                                        int& idealWidth, int& idealHeight,
                                                        const juce::PopupMenu::Options&) override;
    juce::Font getPopupMenuFont() override;

    int getPopupMenuBorderSize() override { return 1; }

    juce::Font getLabelFont (juce::Label&) override;
    void drawLabel (juce::Graphics&, juce::Label&) override;

    void fillTextEditorBackground (juce::Graphics&, int width, int height, juce::TextEditor&) override;
    void drawTextEditorOutline (juce::Graphics&, int width, int height, juce::TextEditor&) override;

    void drawFileBrowserRow (juce::Graphics&, int width, int height, const juce::File&,
                             const juce::String& fileName, juce::Image* icon, const juce::String& size,
                             const juce::String& time, bool isFolder, bool isSelected, int index,
                             juce::DirectoryContentsDisplayComponent&) override;
    juce::AttributedString createFileChooserHeaderText (const juce::String& title,
                                                        const juce::String& instructions) override;

    void drawTableHeaderBackground (juce::Graphics&, juce::TableHeaderComponent&) override;
    void drawTableHeaderColumn (juce::Graphics&, juce::TableHeaderComponent&, const juce::String& columnName,
                                int columnId, int width, int height, bool isMouseOver, bool isMouseDown,
                                int columnFlags) override;
    void drawStretchableLayoutResizerBar (juce::Graphics&, int width, int height, bool isVertical,
                                          bool isMouseOver, bool isMouseDragging) override;

    juce::Label* createSliderTextBox (juce::Slider&) override;
    void drawCornerResizer (juce::Graphics&, int width, int height, bool isMouseOver,
                            bool isMouseDragging) override;

private:
    void drawElement (juce::Graphics&, juce::Rectangle<float> bounds, juce::Component&, juce::Colour fill,
                      bool hasFocusRing);
    void drawDisabledOnMark (juce::Graphics&, juce::Button&);
    void drawMenuHighlight (juce::Graphics&, juce::Rectangle<int> area);

    juce::Typeface::Ptr typeface;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LunaLibLookAndFeel)
};

} // namespace luna
