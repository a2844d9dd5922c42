#pragma once

#include "core/LicenceManager.h"
#include "presets/PresetManager.h"
#include "widgets/ModalWindow.h"
#include "widgets/ToastManager.h"

namespace tessarin
{

/** The dialog that asks for a preset's name, description, categories and author. Message thread. */
class SavePresetModal final : public ModalWindow
{
public:
    /** All outlive the dialog. */
    SavePresetModal (PresetManager&, const LicenceManager&, ToastManager&);

    void resized() override;

private:
    PresetManager& presetManager;
    const LicenceManager& licenceManager;
    ToastManager& toastManager;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SavePresetModal)
};

} // namespace tessarin
