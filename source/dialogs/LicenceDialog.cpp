#include "LicenceDialog.h"

namespace tessarin
{

LicenceDialog::LicenceDialog (const LicenceManager& licence)
    : ModalWindow ("Licence"), licenceManager (licence)
{
    for (auto* label : { &statusLabel, &nameLabel })
    {
        addAndMakeVisible (*label);
        label->setInterceptsMouseClicks (false, false);
    }

    refresh();
}

void LicenceDialog::refresh()
{
    const auto& name = licenceManager.getRegisteredName();
    statusLabel.setText (licenceManager.getStatusText(), juce::dontSendNotification);
    nameLabel.setText (name.isEmpty() ? juce::String() : "Registered to " + name, juce::dontSendNotification);
}

void LicenceDialog::resized()
{
    constexpr auto rowHeight = 20;
    constexpr auto rowStep = 30;
    placePanel (contentHeight + 2 * rowStep + 2 * margin);

    auto rows = panelBounds.reduced (margin).withTrimmedTop (contentHeight);
    statusLabel.setBounds (rows.removeFromTop (rowStep).withHeight (rowHeight));
    nameLabel.setBounds (rows.removeFromTop (rowStep).withHeight (rowHeight));
}

} // namespace tessarin
