#include "ModalWindow.h"

#include "common/ColourIds.h"
#include "widgets/Contrast.h"

namespace tessarin
{

ModalWindow::ModalWindow (const juce::String& titleToShow) : title (titleToShow)
{
    addAndMakeVisible (panel);
    panel.setName (title);
    setTitle (title);
    setWantsKeyboardFocus (true);

    // The tab key stays within the dialog.
    setFocusContainerType (FocusContainerType::keyboardFocusContainer);
}

void ModalWindow::mouseDown (const juce::MouseEvent& event)
{
    if (! panelBounds.contains (event.getPosition()))
        close();
}

bool ModalWindow::keyPressed (const juce::KeyPress& key)
{
    // Without a control that has the keyboard, the next one would lie behind the dialog.
    if (key.isKeyCode (juce::KeyPress::tabKey))
        return hasKeyboardFocus (false);

    if (key != juce::KeyPress (juce::KeyPress::escapeKey))
        return false;

    close();
    return true;
}

void ModalWindow::close()
{
    if (closable)
        setVisible (false);
    else
        getLookAndFeel().playAlertSound();
}

void ModalWindow::paint (juce::Graphics& g)
{
    g.fillAll (juce::Colour (0xbb000000));
}

void ModalWindow::colourAsDefault (juce::TextButton& button)
{
    using namespace luna::ColourIds;

    const auto text = findColour (highlightedTextColourId);
    const auto fill = luna::Contrast::darkenFor (text, findColour (primaryColourId));
    button.setColour (juce::TextButton::buttonColourId, fill);
    button.setColour (juce::TextButton::textColourOffId, text);
    button.setColour (elementBorderColourId, findColour (textColourId));
}

void ModalWindow::placePanel (int panelHeight)
{
    constexpr auto top = 100;
    const auto panelWidth = 2 * margin + 340;

    panelBounds = { getParentWidth() / 2 - 170, top, panelWidth, panelHeight };

    if (getParentHeight() <= panelHeight + top)
        panelBounds = panelBounds.withCentre ({ getParentWidth() / 2, getParentHeight() / 2 });

    panel.setBounds (panelBounds);
}

} // namespace tessarin
