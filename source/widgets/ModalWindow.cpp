#include "ModalWindow.h"

namespace tessarin
{

ModalWindow::ModalWindow (const juce::String& titleToShow) : title (titleToShow)
{
    addAndMakeVisible (panel);
    panel.setName (title);
    setTitle (title);
}

void ModalWindow::mouseDown (const juce::MouseEvent& event)
{
    if (panelBounds.contains (event.getPosition()))
        return;

    if (closable)
        setVisible (false);
    else
        getLookAndFeel().playAlertSound();
}

void ModalWindow::paint (juce::Graphics& g)
{
    g.fillAll (juce::Colour (0xbb000000));
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
