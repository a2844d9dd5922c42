#include "SavePresetModal.h"

namespace tessarin
{

SavePresetModal::SavePresetModal (PresetManager& presets, const LicenceManager& licence, ToastManager& toasts)
    : ModalWindow ("Save Preset"), presetManager (presets), licenceManager (licence), toastManager (toasts)
{
    juce::ignoreUnused (presetManager, licenceManager, toastManager);
}

void SavePresetModal::resized()
{
    placePanel (contentHeight + 180 + 2 * margin);
}

} // namespace tessarin
