#pragma once

#include "core/LicenceManager.h"
#include "widgets/ModalWindow.h"

namespace tessarin
{

/** Shows what licensing says: its status, and whom the product is registered to. Message thread. */
class LicenceDialog final : public ModalWindow
{
public:
    /** The manager outlives the dialog. */
    explicit LicenceDialog (const LicenceManager&);

    /** Takes the texts anew. */
    void refresh();

    void resized() override;

private:
    const LicenceManager& licenceManager;
    juce::Label statusLabel;
    juce::Label nameLabel;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LicenceDialog)
};

} // namespace tessarin
