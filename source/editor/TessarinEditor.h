#pragma once

#include "browser/PresetBrowser.h"
#include "common/ParameterIds.h"
#include "core/TessarinProcessor.h"
#include "dialogs/LicenceDialog.h"
#include "dialogs/LicenceOverlay.h"
#include "dialogs/SavePresetModal.h"
#include "dialogs/SettingsModal.h"
#include "editor/ClickFocus.h"
#include "editor/EditCommands.h"
#include "editor/HeldMouse.h"
#include "editor/OverlayFocus.h"
#include "editor/PostedUpdate.h"
#include "editor/TopBar.h"
#include "editor/WindowEventPump.h"
#include "editor/WindowVisibility.h"
#include "look/TessarinLookAndFeel.h"
#include "widgets/EditItems.h"
#include "widgets/FrameClock.h"
#include "widgets/ParameterMenu.h"
#include "widgets/PictureDelay.h"
#include "widgets/TooltipPanel.h"

namespace tessarin
{

/** The frame of the maker's editors: top bar, tooltip strip, dialogs, preset browser, theme and scale. The
    product derives from it and fills the area between the bars.

    The user's scale and the host's multiply in the transform; the layout knows neither. Message thread.
*/
class TessarinEditor : public juce::AudioProcessorEditor,
                       public juce::ChangeListener,
                       public PresetManager::Listener,
                       public luna::EditItems,
                       public luna::PictureDelay
{
public:
    explicit TessarinEditor (TessarinProcessor& processor);
    ~TessarinEditor() override;

    void paint (juce::Graphics&) override;
    void resized() override;

    void addEditItems (juce::PopupMenu& menu) override { editCommands.addTo (menu); }

    /** The keys of the history, unless a dialog lies over what they change or a text has them, and the space bar. What
        nothing in here has used is the host's. */
    bool keyPressed (const juce::KeyPress&) override;

    /** A factor that is not above 0 keeps the host's last one. */
    void setScaleFactor (float newScale) override;

    /** Places the product's content between the bars. */
    virtual void updateLayout() = 0;

    /** Called at the end of `paint`. */
    virtual void paintContent (juce::Graphics&) {}

    /** The tree of the parameters was replaced, on whichever thread. */
    virtual void stateReloaded (juce::ValueTree& newState) = 0;

    void presetSaved (Preset) override;

    void presetLoaded (Preset) override {}

    void changeListenerCallback (juce::ChangeBroadcaster* source) override;

    /** From the settings. All editors of the process share the theme; this one is told at once. */
    void loadTheme();

    void setPresetBrowserVisible (bool shouldBeVisible);

    /** What lies between the bars. */
    [[nodiscard]] juce::Rectangle<int> getContentArea() const;

    juce::SharedResourcePointer<DLAF> lookAndFeel;
    TessarinProcessor& processor;
    juce::AudioProcessorValueTreeState& parameters;
    const HeldMouse heldMouse { *this };

    /** Before the children, which may have the keyboard as they go. */
    ClickFocus clickFocus { *this };
    OverlayFocus overlayFocus { *this, [this] { return clickFocus.wasJustClicked(); } };

    LicenceDialog licenceDialog;
    SavePresetModal savePresetModal;
    SettingsModal settingsModal;

    /** The processor's, so that a message can wait for an editor. */
    ToastManager* toastManager;

    TopBar topBar;
    float hostScale = 1.0f;
    luna::TooltipPanel tooltipPanel;

    /** Hidden unless licensing shows them. A click on the first opens the licence dialog. */
    LicenceOverlay licenceOverlay { LicenceOverlay::Kind::cover };
    LicenceOverlay licenceNotice { LicenceOverlay::Kind::notice };

    PresetBrowser presetBrowser;

private:
    void focusGained (FocusChangeType cause) override { overlayFocus.editorGotFocus (cause); }

    void focusOfChildComponentChanged (FocusChangeType) override;
    void addChildren();
    void open (juce::Component& dialog);
    void applyScale();
    void showLicence();
    void showHeardSide();
    void raiseOverlays();
    [[nodiscard]] bool isUnderDialog() const;

    /** Hears of a restore and of changed parameters on any thread, also while the editor is being made or destroyed. So
        it is an object of its own, whose class does not change meanwhile. */
    struct StateListener final : juce::ValueTree::Listener
    {
        explicit StateListener (TessarinEditor& editor)
            : update ([&editor] { editor.stateReloaded (editor.parameters.state); }),
              changeUpdate ([&editor] { editor.topBar.showPresetChange(); })
        {
        }

        void valueTreeRedirected (juce::ValueTree&) override
        {
            update.post();
            changeUpdate.post();
        }

        /** JUCE brings values into the tree some time after they have changed, and not on the audio thread. */
        void valueTreePropertyChanged (juce::ValueTree&, const juce::Identifier&) override
        {
            changeUpdate.post();
        }

        PostedUpdate update, changeUpdate;
    };

    StateListener stateListener { *this };

    EditCommands editCommands { processor.editHistory, [this] { showHeardSide(); } };
    luna::ParameterMenu bypassMenu { topBar.bypassButton, parameters.getParameter (ParameterIds::enable) };

    WindowEventPump windowEventPump { *this };
    WindowVisibility visibility { *this };
    luna::FrameClock frameClock { *this, [this] { return visibility.isSeen(); },
                                  [this] { putOffPictures(); } };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (TessarinEditor)
};

} // namespace tessarin
