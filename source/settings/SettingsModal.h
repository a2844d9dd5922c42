#pragma once

#include "widgets/ModalWindow.h"
#include "widgets/ToastManager.h"

#include <juce_data_structures/juce_data_structures.h>

namespace tessarin
{

/** The dialog that changes the settings. Message thread. */
class SettingsModal final : public ModalWindow
{
public:
    /** Both outlive the dialog. */
    SettingsModal (juce::PropertiesFile&, ToastManager&);

    void resized() override;

private:
    ToastManager& toastManager;
    juce::PropertiesFile& properties;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SettingsModal)
};

} // namespace tessarin
