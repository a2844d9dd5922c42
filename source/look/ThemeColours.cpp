#include "ThemeColours.h"

#include "common/ColourIds.h"

#include <juce_audio_utils/juce_audio_utils.h>

namespace tessarin::ThemeColours
{

using namespace luna::ColourIds;

namespace
{
struct DerivedColours
{
    int source;
    std::vector<int> targets;
};

const std::vector<DerivedColours>& getDerivedColours()
{
    using juce::MidiKeyboardComponent;

    static const std::vector<DerivedColours> table {
        { warningColourId, { toastErrorColourId, meterOverColourId, tooltipTextColourId } },
        { primaryColourId,
          { toastSuccessColourId, 0x2000031, meterBarColourId, 0x2000070, 0x2000090,
            juce::TextButton::buttonOnColourId, juce::TextEditor::highlightColourId,
            juce::Slider::textBoxHighlightColourId, juce::ScrollBar::thumbColourId,
            juce::TreeView::selectedItemBackgroundColourId, MidiKeyboardComponent::keyDownOverlayColourId,
            juce::TooltipWindow::backgroundColourId, juce::ProgressBar::foregroundColourId } },
        { panelColourId, { toastNoticeColourId, panelFillColourId } },
        { backgroundColourId,
          { graphBackgroundColourId, 0x2000030, 0x2000044, meterBackgroundColourId, 0x2000081, 0x2000091,
            0x2000110, panelBorderColourId, juce::ResizableWindow::backgroundColourId,
            juce::PopupMenu::highlightedBackgroundColourId, juce::ListBox::backgroundColourId,
            juce::TreeView::backgroundColourId, juce::TableHeaderComponent::backgroundColourId,
            juce::TableHeaderComponent::highlightColourId, juce::TableHeaderComponent::outlineColourId,
            juce::ProgressBar::backgroundColourId } },
        { elementColourId,
          { juce::TextButton::buttonColourId, juce::TextEditor::backgroundColourId,
            juce::PopupMenu::backgroundColourId, juce::Slider::thumbColourId } },
        { elementBorderColourId,
          { juce::TextEditor::outlineColourId, juce::TextEditor::focusedOutlineColourId,
            juce::Slider::trackColourId, juce::Slider::textBoxOutlineColourId,
            juce::ScrollBar::trackColourId } },
        { textColourId,
          { graphGridTextColourId, graphGridColourId, graphLabelColourId, 0x2000032, 0x2000043,
            meterHoldColourId, 0x2000062, 0x2000080, 0x2000100, 0x2000111, juce::TextButton::textColourOffId,
            juce::Label::textColourId, juce::Label::textWhenEditingColourId, juce::TextEditor::textColourId,
            juce::CaretComponent::caretColourId, juce::ComboBox::textColourId, juce::PopupMenu::textColourId,
            juce::ListBox::outlineColourId, juce::ListBox::textColourId } },
        { highlightedTextColourId,
          { juce::TextButton::textColourOnId, juce::TextEditor::highlightedTextColourId,
            juce::PopupMenu::highlightedTextColourId, juce::PopupMenu::headerTextColourId,
            juce::Slider::textBoxTextColourId, juce::TableHeaderComponent::textColourId } },
        { correlationInPhaseColourId, { 0x2000040 } },
        { correlationOutOfPhaseColourId, { 0x2000041 } },
        { correlationMiddleColourId, { 0x2000042 } },
        { pianoRollWhiteRowColourId, { 0x2000060 } },
        { pianoRollBlackRowColourId, { 0x2000061 } },
        { pianoRollWhiteKeyColourId, { MidiKeyboardComponent::whiteNoteColourId } },
        { pianoRollBlackKeyColourId,
          { MidiKeyboardComponent::blackNoteColourId, MidiKeyboardComponent::keySeparatorLineColourId,
            MidiKeyboardComponent::textLabelColourId } },
    };

    return table;
}

/** Of what JUCE opens by itself: its file dialog, and the questions that it asks. */
const std::vector<DerivedColours>& getDialogColours()
{
    using Files = juce::DirectoryContentsDisplayComponent;
    using Browser = juce::FileBrowserComponent;

    static const std::vector<DerivedColours> table {
        { panelColourId, { juce::AlertWindow::backgroundColourId } },
        { primaryColourId, { Files::highlightColourId } },
        { elementColourId,
          { Browser::currentPathBoxBackgroundColourId, Browser::filenameBoxBackgroundColourId } },
        { textColourId,
          { juce::AlertWindow::textColourId, juce::AlertWindow::outlineColourId,
            juce::FileChooserDialogBox::titleTextColourId, Browser::currentPathBoxTextColourId,
            Browser::currentPathBoxArrowColourId, Browser::filenameBoxTextColourId } },
        { highlightedTextColourId, { Files::textColourId, Files::highlightedTextColourId } },
    };

    return table;
}

void setAll (juce::LookAndFeel& lookAndFeel, std::initializer_list<int> targets, juce::Colour colour)
{
    for (const auto target : targets)
        lookAndFeel.setColour (target, colour);
}
} // namespace

const std::vector<SystemColour>& getSystemColours()
{
    static const std::vector<SystemColour> table {
        { backgroundColourId, "background.background" },
        { panelColourId, "background.panel" },
        { elementColourId, "elements.element" },
        { elementBorderColourId, "elements.elementborder" },
        { disabledElementColourId, "elements.disabledelement" },
        { disabledElementBorderColourId, "elements.disabledelementborder" },
        { textColourId, "text.text" },
        { highlightedTextColourId, "text.highlightedtext" },
        { disabledTextColourId, "text.disabledtext" },
        { pluginNameColourId, "text.pluginname" },
        { sliderKnobColourId, "slider.knob" },
        { sliderRingColourId, "slider.ring" },
        { sliderDotColourId, "slider.dot" },
        { sliderTrackColourId, "slider.track" },
        { sliderTrackBackgroundColourId, "slider.trackbackground" },
        { primaryColourId, "theme.primary" },
        { secondaryColourId, "theme.secondary" },
        { tertiaryColourId, "theme.tertiary" },
        { warningColourId, "theme.warning" },
        { correlationInPhaseColourId, "correlationmeter.inphase" },
        { correlationOutOfPhaseColourId, "correlationmeter.outofphase" },
        { correlationMiddleColourId, "correlationmeter.middle" },
        { flockPredatorColourId, "flock.predator" },
        { pianoRollBlackRowColourId, "pianoroll.blackrow" },
        { pianoRollWhiteRowColourId, "pianoroll.whiterow" },
        { pianoRollBlackKeyColourId, "pianoroll.blackkey" },
        { pianoRollWhiteKeyColourId, "pianoroll.whitekey" },
    };

    return table;
}

void apply (juce::LookAndFeel& lookAndFeel, const std::function<juce::Colour (const juce::String&)>& resolve)
{
    for (const auto& colour : getSystemColours())
        lookAndFeel.setColour (colour.id, resolve (colour.key));

    for (const auto* table : { &getDerivedColours(), &getDialogColours() })
        for (const auto& derived : *table)
            for (const auto target : derived.targets)
                lookAndFeel.setColour (target, lookAndFeel.findColour (derived.source));

    lookAndFeel.setColour (juce::MidiKeyboardComponent::mouseOverKeyOverlayColourId,
                           lookAndFeel.findColour (primaryColourId).brighter());

    setAll (lookAndFeel, { toastTextColourId, juce::TooltipWindow::textColourId }, juce::Colours::white);

    setAll (lookAndFeel,
            { juce::Label::backgroundWhenEditingColourId, juce::Label::outlineWhenEditingColourId,
              juce::Slider::textBoxBackgroundColourId, juce::MidiKeyboardComponent::shadowColourId,
              juce::TooltipWindow::outlineColourId },
            juce::Colours::transparentBlack);
}

} // namespace tessarin::ThemeColours
