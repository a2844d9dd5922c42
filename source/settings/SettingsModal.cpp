#include "SettingsModal.h"

namespace tessarin
{

SettingsModal::SettingsModal (juce::PropertiesFile& settings, ToastManager& toasts)
    : ModalWindow ("Settings"), toastManager (toasts), properties (settings)
{
    juce::ignoreUnused (toastManager, properties);
}

void SettingsModal::resized()
{
    placePanel (contentHeight + 55 + 2 * margin);
}

} // namespace tessarin
