#include "LunaLibLookAndFeel.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "widgets/Contrast.h"

#include <LunaBinary.h>

namespace luna
{

using namespace ColourIds;

namespace
{
constexpr auto cornerRadius = 3.0f;

juce::Font makeControlFont()
{
    return juce::Font (juce::FontOptions (FontHeights::control));
}

/** The same step up under the mouse and down while pressed. */
juce::Colour shadeForMouse (juce::Colour colour, bool isHighlighted, bool isDown)
{
    constexpr auto step = 0.1f;
    return isDown ? colour.darker (step) : isHighlighted ? colour.brighter (step) : colour;
}

/** The primary colour under a lighter text goes down in both, so that the text stays legible. */
juce::Colour shadeOnForMouse (juce::Colour colour, juce::Colour text, bool isHighlighted, bool isDown)
{
    if (text.getPerceivedBrightness() < colour.getPerceivedBrightness())
        return shadeForMouse (colour, isHighlighted, isDown);

    return isDown ? colour.darker (0.4f) : isHighlighted ? colour.darker (0.2f) : colour;
}

void drawChevron (juce::Graphics& g, juce::Rectangle<float> area, juce::Colour colour)
{
    juce::Path chevron;
    chevron.startNewSubPath (area.getTopLeft());
    chevron.lineTo (area.getCentreX(), area.getBottom());
    chevron.lineTo (area.getTopRight());

    g.setColour (colour);
    g.strokePath (chevron,
                  juce::PathStrokeType (1.5f, juce::PathStrokeType::curved, juce::PathStrokeType::rounded));
}
} // namespace

LunaLibLookAndFeel::LunaLibLookAndFeel()
    : typeface (juce::Typeface::createSystemTypefaceFor (LunaBinary::NunitoSemiBold_ttf,
                                                         LunaBinary::NunitoSemiBold_ttfSize))
{
}

juce::Typeface::Ptr LunaLibLookAndFeel::getTypefaceForFont (const juce::Font&)
{
    return typeface;
}

void LunaLibLookAndFeel::drawPanelBackground (juce::Graphics& g, Panel& panel)
{
    const auto inner = panel.getLocalBounds().reduced (1);

    g.fillAll (panel.findColour (panelBorderColourId));
    g.setColour (panel.findColour (panelFillColourId));
    g.fillRect (inner.withSize (juce::jmax (0, inner.getWidth()), juce::jmax (0, inner.getHeight())));
}

//======================================================================================================================
// Buttons

void LunaLibLookAndFeel::drawElement (juce::Graphics& g, juce::Rectangle<float> bounds,
                                      juce::Component& component, juce::Colour fill, bool hasFocusRing)
{
    const auto isEnabled = component.isEnabled();
    const auto borderId = ! isEnabled    ? disabledElementBorderColourId
                          : hasFocusRing ? highlightedTextColourId
                                         : elementBorderColourId;

    g.setColour (isEnabled ? fill : component.findColour (disabledElementColourId));
    g.fillRoundedRectangle (bounds, cornerRadius);
    g.setColour (component.findColour (borderId));

    // Twice as wide, since one theme's borders have the same colour.
    const auto thickness = isEnabled && hasFocusRing ? 2.0f : 1.0f;
    g.drawRoundedRectangle (bounds.reduced (0.5f * thickness), cornerRadius, thickness);
}

void LunaLibLookAndFeel::drawButtonBackground (juce::Graphics& g, juce::Button& button,
                                               const juce::Colour& colour, bool isHighlighted, bool isDown)
{
    const auto text = button.findColour (highlightedTextColourId);
    const auto fill = button.getToggleState() ? shadeOnForMouse (colour, text, isHighlighted, isDown)
                                              : shadeForMouse (colour, isHighlighted, isDown);

    drawElement (g, button.getLocalBounds().toFloat(), button, fill, button.hasKeyboardFocus (false));

    if (button.getToggleState() && ! button.isEnabled())
        drawDisabledOnMark (g, button);
}

/** A bar at the left, where neither icon nor text stands: the fill of what is disabled tells nothing. */
void LunaLibLookAndFeel::drawDisabledOnMark (juce::Graphics& g, juce::Button& button)
{
    constexpr auto inset = 3.0f;
    constexpr auto width = 3.0f;
    const auto bar = button.getLocalBounds().toFloat().reduced (inset).withWidth (width);

    g.setColour (Contrast::moveAway (button.findColour (disabledTextColourId),
                                     button.findColour (disabledElementColourId)));
    g.fillRoundedRectangle (bar, 0.5f * width);
}

void LunaLibLookAndFeel::drawButtonText (juce::Graphics& g, juce::TextButton& button, bool isHighlighted,
                                         bool isDown)
{
    // On a shaded ground the plain text colour would be too faint.
    const auto isLit = button.getToggleState() || isHighlighted || isDown;
    const auto id = isLit ? juce::TextButton::textColourOnId : juce::TextButton::textColourOffId;

    g.setColour (button.findColour (button.isEnabled() ? id : static_cast<int> (disabledTextColourId)));
    g.setFont (getTextButtonFont (button, button.getHeight()));
    g.drawText (button.getButtonText(), button.getLocalBounds().reduced (5, 0), juce::Justification::centred,
                true);
}

juce::Font LunaLibLookAndFeel::getTextButtonFont (juce::TextButton&, int)
{
    return makeControlFont();
}

//======================================================================================================================
// Combo boxes

void LunaLibLookAndFeel::drawComboBox (juce::Graphics& g, int width, int height, bool isDown, int, int, int,
                                       int, juce::ComboBox& box)
{
    const auto fill =
        shadeForMouse (box.findColour (elementColourId), box.isMouseOverOrDragging (true), isDown);
    drawElement (g, juce::Rectangle<int> (width, height).toFloat(), box, fill, box.hasKeyboardFocus (true));

    const auto arrow =
        juce::Rectangle<float> (8.0f, 4.0f)
            .withCentre ({ static_cast<float> (width) - 12.0f, static_cast<float> (height) * 0.5f });
    drawChevron (g, arrow, box.findColour (box.isEnabled() ? textColourId : disabledTextColourId));
}

juce::Font LunaLibLookAndFeel::getComboBoxFont (juce::ComboBox&)
{
    return makeControlFont();
}

void LunaLibLookAndFeel::positionComboBoxText (juce::ComboBox& box, juce::Label& label)
{
    label.setBounds (5, 0, juce::jmax (0, box.getWidth() - 25), box.getHeight());
    label.setFont (getComboBoxFont (box));
    label.setBorderSize ({ 0, 2, 0, 2 });

    // The box itself lights up under the mouse, and shows its tooltip.
    label.setInterceptsMouseClicks (label.isEditable(), label.isEditable());
}

juce::Label* LunaLibLookAndFeel::createComboBoxTextBox (juce::ComboBox&)
{
    return new juce::Label();
}

//======================================================================================================================
// Labels and text editors

juce::Font LunaLibLookAndFeel::getLabelFont (juce::Label& label)
{
    return label.getFont();
}

void LunaLibLookAndFeel::drawLabel (juce::Graphics& g, juce::Label& label)
{
    g.fillAll (label.findColour (juce::Label::backgroundColourId));

    if (label.isBeingEdited())
        return;

    const auto font = getLabelFont (label);
    const auto area = label.getBorderSize().subtractedFrom (label.getLocalBounds());

    g.setColour (label.findColour (label.isEnabled() ? static_cast<int> (juce::Label::textColourId)
                                                     : static_cast<int> (disabledTextColourId)));
    g.setFont (font);
    g.drawFittedText (
        label.getText(), area, label.getJustificationType(),
        juce::jmax (1, static_cast<int> (static_cast<float> (area.getHeight()) / font.getHeight())),
        label.getMinimumHorizontalScale());
}

void LunaLibLookAndFeel::fillTextEditorBackground (juce::Graphics& g, int width, int height,
                                                   juce::TextEditor& editor)
{
    const auto fill =
        editor.findColour (editor.isEnabled() ? static_cast<int> (juce::TextEditor::backgroundColourId)
                                              : static_cast<int> (disabledElementColourId));
    g.setColour (fill);
    g.fillRoundedRectangle (juce::Rectangle<int> (width, height).toFloat(), cornerRadius);
}

void LunaLibLookAndFeel::drawTextEditorOutline (juce::Graphics& g, int width, int height,
                                                juce::TextEditor& editor)
{
    // The ring of all that has the focus, since one theme's borders have the same colour.
    const auto hasRing = editor.isEnabled() && editor.hasKeyboardFocus (true);
    const auto id = ! editor.isEnabled() ? static_cast<int> (disabledElementBorderColourId)
                    : hasRing            ? static_cast<int> (highlightedTextColourId)
                                         : static_cast<int> (juce::TextEditor::outlineColourId);
    const auto thickness = hasRing ? 2.0f : 1.0f;
    g.setColour (editor.findColour (id));
    g.drawRoundedRectangle (juce::Rectangle<int> (width, height).toFloat().reduced (0.5f * thickness),
                            cornerRadius, thickness);
}

//======================================================================================================================
// JUCE's own file dialog, where the desktop has none

void LunaLibLookAndFeel::drawFileBrowserRow (juce::Graphics& g, int width, int height, const juce::File&,
                                             const juce::String& fileName, juce::Image* icon,
                                             const juce::String& size, const juce::String& time,
                                             bool isFolder, bool isSelected, int,
                                             juce::DirectoryContentsDisplayComponent&)
{
    constexpr auto iconWidth = 32;
    constexpr auto inset = 4;
    constexpr auto narrowWidth = 450;

    auto row = juce::Rectangle<int> (width, height);
    const auto text = findColour (highlightedTextColourId);

    if (isSelected)
        g.fillAll (Contrast::darkenFor (text, findColour (primaryColourId)));

    const auto iconArea = row.removeFromLeft (iconWidth).reduced (2).toFloat();

    if (icon != nullptr && icon->isValid())
        g.drawImage (*icon, iconArea,
                     juce::RectanglePlacement::centred | juce::RectanglePlacement::onlyReduceInSize);
    else if (const auto* image = isFolder ? getDefaultFolderImage() : getDefaultDocumentFileImage())
        image->drawWithin (g, iconArea, juce::RectanglePlacement::centred, 1.0f);

    g.setFont (makeControlFont());
    g.setColour (text);
    row.removeFromRight (inset);

    if (width > narrowWidth && ! isFolder)
    {
        g.drawText (time, row.removeFromRight (width / 4), juce::Justification::centredRight, true);
        g.drawText (size, row.removeFromRight (width / 8), juce::Justification::centredRight, true);
    }

    g.drawText (fileName, row, juce::Justification::centredLeft, true);
}

juce::AttributedString LunaLibLookAndFeel::createFileChooserHeaderText (const juce::String& title,
                                                                        const juce::String&)
{
    juce::AttributedString text;
    text.setJustification (juce::Justification::centred);
    text.append (title, juce::FontOptions (FontHeights::title),
                 findColour (juce::FileChooserDialogBox::titleTextColourId));
    return text;
}

//======================================================================================================================
// Tables and what divides

void LunaLibLookAndFeel::drawTableHeaderBackground (juce::Graphics& g, juce::TableHeaderComponent& header)
{
    const auto bounds = header.getLocalBounds();

    g.fillAll (header.findColour (juce::TableHeaderComponent::backgroundColourId));
    g.setColour (header.findColour (textColourId));
    g.fillRect (bounds.withTop (bounds.getBottom() - 1));
}

void LunaLibLookAndFeel::drawTableHeaderColumn (juce::Graphics& g, juce::TableHeaderComponent& header,
                                                const juce::String& columnName, int columnId, int width,
                                                int height, bool, bool, int)
{
    constexpr auto textInset = 4;
    constexpr auto dividerInset = 5;

    g.setColour (header.findColour (juce::TableHeaderComponent::textColourId));
    g.setFont (makeControlFont());
    g.drawText (columnName, textInset, 0, juce::jmax (0, width - 2 * textInset), height - 1,
                juce::Justification::centredLeft, true);

    // Where the column can be made wider, which the last one cannot.
    g.setColour (header.findColour (textColourId));

    if (header.getIndexOfColumnId (columnId, true) < header.getNumColumns (true) - 1)
        g.fillRect (width - 1, dividerInset, 1, height - 1 - 2 * dividerInset);
}

void LunaLibLookAndFeel::drawStretchableLayoutResizerBar (juce::Graphics& g, int width, int height,
                                                          bool isVertical, bool isMouseOver,
                                                          bool isMouseDragging)
{
    constexpr auto gripLength = 20;
    const juce::Rectangle<int> bounds (width, height);

    if (isMouseOver || isMouseDragging)
        g.fillAll (findColour (primaryColourId));

    g.setColour (findColour (isMouseOver || isMouseDragging ? highlightedTextColourId : textColourId));
    g.fillRect (isVertical ? bounds.withSizeKeepingCentre (1, gripLength)
                           : bounds.withSizeKeepingCentre (gripLength, 1));
}

juce::Label* LunaLibLookAndFeel::createSliderTextBox (juce::Slider& slider)
{
    auto* box = LookAndFeel_V4::createSliderTextBox (slider);
    box->setFont (makeControlFont());
    box->setJustificationType (juce::Justification::centred);
    box->setBorderSize ({});
    box->setColour (juce::Label::outlineColourId, juce::Colours::transparentBlack);
    return box;
}

void LunaLibLookAndFeel::drawCornerResizer (juce::Graphics& g, int width, int height, bool isMouseOver,
                                            bool isMouseDragging)
{
    g.setColour (findColour (isMouseOver || isMouseDragging ? highlightedTextColourId : textColourId));

    const auto right = static_cast<float> (width) - 2.0f;
    const auto bottom = static_cast<float> (height) - 2.0f;

    for (const auto length : { 4.0f, 8.0f, 12.0f })
        g.drawLine (right - length, bottom, right, bottom - length, 1.0f);
}

} // namespace luna
