#include "TessarinEditor.h"

#include "common/ColourIds.h"
#include "common/HostKeys.h"
#include "common/WindowSystemNews.h"
#include "editor/PaintOrigin.h"
#include "settings/Settings.h"

namespace tessarin
{

namespace
{
constexpr auto topBarHeight = 38;
constexpr auto tooltipBarHeight = 30;

/** Before any child is made, since children read their colours when they are. Another instance may have changed the
    settings since this one read them. */
juce::SharedResourcePointer<DLAF> withTheme (SettingsFile& settings)
{
    settings.refresh();

    juce::SharedResourcePointer<DLAF> shared;
    shared->lookAndFeel.setTheme (settings.getValue (Settings::themeKey, Settings::defaultTheme));
    return shared;
}

/** The space bar presses what has the focus, for which JUCE's own buttons and boxes have the return key alone. */
bool isPressedBySpace (const juce::KeyPress& key)
{
    auto* focused = juce::Component::getCurrentlyFocusedComponent();
    const auto isPressable = dynamic_cast<juce::Button*> (focused) != nullptr
                             || dynamic_cast<juce::ComboBox*> (focused) != nullptr;

    return isPressable && key == juce::KeyPress (juce::KeyPress::spaceKey)
           && focused->keyPressed (juce::KeyPress (juce::KeyPress::returnKey));
}

/** There the keys of the history are the text's, also when it has nothing to take back. */
bool isTyping()
{
    return dynamic_cast<juce::TextEditor*> (juce::Component::getCurrentlyFocusedComponent()) != nullptr;
}
} // namespace

TessarinEditor::TessarinEditor (TessarinProcessor& owner)
    : AudioProcessorEditor (owner),
      lookAndFeel (withTheme (owner.settings)),
      processor (owner),
      parameters (owner.parameters),
      licenceDialog (owner.licenceManager),
      savePresetModal (owner.presetManager, owner.licenceManager, owner.toastManager),
      settingsModal (owner.settings, owner.toastManager),
      toastManager (&owner.toastManager),
      topBar (owner, { .openSaveDialog = [this] { open (savePresetModal); },
                       .openLicenceDialog = [this] { open (licenceDialog); },
                       .openSettings = [this] { open (settingsModal); },
                       .isBrowserVisible = [this] { return presetBrowser.isVisible(); },
                       .setBrowserVisible = [this] (bool isVisible) { setPresetBrowserVisible (isVisible); },
                       .loadTheme = [this] { loadTheme(); } }),
      presetBrowser (owner.presetManager)
{
    setLookAndFeel (&lookAndFeel->lookAndFeel);
    setOpaque (true);
    setCachedComponentImage (new PaintOrigin (*this));

    // The focus falls here when a dialog goes, and not on the first button of the bar.
    setWantsKeyboardFocus (true);
    applyScale();

    processor.settings.addChangeListener (this);
    processor.licenceManager.addChangeListener (this);
    processor.presetManager.addListener (this);
    savePresetModal.addChangeListener (&topBar);

    {
        // Hosts restore state on any thread, which calls the tree's listeners.
        const juce::ScopedLock scope (processor.stateLock);
        parameters.state.addListener (&stateListener);
    }

    addChildren();
    presetBrowser.onCloseRequest = [this] { topBar.closePresetBrowser(); };
    licenceOverlay.onClick = [this] { open (licenceDialog); };
    overlayFocus.watch (
        { &presetBrowser, &licenceOverlay, &settingsModal, &savePresetModal, &licenceDialog, toastManager });
    showLicence();
    showHeardSide();
}

TessarinEditor::~TessarinEditor()
{
    overlayFocus.stop();

    {
        const juce::ScopedLock scope (processor.stateLock);
        parameters.state.removeListener (&stateListener);
    }

    savePresetModal.removeChangeListener (&topBar);
    processor.presetManager.removeListener (this);
    processor.licenceManager.removeChangeListener (this);
    processor.settings.removeChangeListener (this);
    setLookAndFeel (nullptr);

    if (const auto errors = windowSystemErrors.exchange (0); errors > 0)
        juce::Logger::writeToLog ("Errors of the window system, kept from the host: "
                                  + juce::String (errors));
}

/** With focus, so that its keys work; a dialog may have hidden itself again, and a message may lie on top. */
void TessarinEditor::open (juce::Component& dialog)
{
    dialog.setVisible (true);
    dialog.toFront (false);
    overlayFocus.takeFocus();
}

void TessarinEditor::addChildren()
{
    addAndMakeVisible (topBar);
    addAndMakeVisible (tooltipPanel);
    tooltipPanel.hideStatusWhenTooltipShown = true;

    for (auto* hidden : std::initializer_list<juce::Component*> {
             &licenceOverlay, &licenceNotice, &presetBrowser, toastManager, &settingsModal, &savePresetModal,
             &licenceDialog })
        addChildComponent (*hidden);
}

void TessarinEditor::paint (juce::Graphics& g)
{
    g.setColour (findColour (luna::ColourIds::backgroundColourId));
    g.fillAll();
    paintContent (g);
}

juce::Rectangle<int> TessarinEditor::getContentArea() const
{
    return getLocalBounds().withTrimmedTop (topBarHeight).withTrimmedBottom (tooltipBarHeight);
}

void TessarinEditor::resized()
{
    if (frameClock.hasBegun())
        putOffPictures();

    topBar.setBounds (0, 0, getWidth(), topBarHeight);
    tooltipPanel.setBounds (0, getHeight() - tooltipBarHeight, getWidth(), tooltipBarHeight);
    updateLayout();

    for (auto* overlay : std::initializer_list<juce::Component*> {
             toastManager, &settingsModal, &savePresetModal, &licenceDialog, &licenceOverlay })
        overlay->setBounds (getLocalBounds());

    presetBrowser.setBounds (getContentArea());
    licenceNotice.setBounds (getContentArea().removeFromTop (tooltipBarHeight));
    raiseOverlays();
}

/** The product's content comes later than the frame's children, and would cover them. */
void TessarinEditor::raiseOverlays()
{
    for (auto* overlay : std::initializer_list<juce::Component*> {
             &licenceNotice, &presetBrowser, &licenceOverlay, toastManager, &settingsModal, &savePresetModal,
             &licenceDialog })
        overlay->toFront (false);
}

void TessarinEditor::setPresetBrowserVisible (bool shouldBeVisible)
{
    presetBrowser.setVisible (shouldBeVisible);
    raiseOverlays();

    if (shouldBeVisible)
        overlayFocus.takeFocus();
}

bool TessarinEditor::isUnderDialog() const
{
    return toastManager->isVisible() || settingsModal.isVisible() || savePresetModal.isVisible()
           || licenceDialog.isVisible() || licenceOverlay.isVisible();
}

bool TessarinEditor::keyPressed (const juce::KeyPress& key)
{
    // The host has such keys too, and would take back something of its own.
    if (EditCommands::isCommand (key))
    {
        // One that is open tells of the step that comes next, which is another afterwards.
        juce::PopupMenu::dismissAllActiveMenus();

        if (! isUnderDialog() && ! isTyping())
            editCommands.perform (key);

        return true;
    }

    if (isPressedBySpace (key))
        return true;

    // JUCE moves the focus by the tab key after this.
    const auto pass = passKeyToHost.load();

    if (pass != nullptr && ! key.isKeyCode (juce::KeyPress::tabKey))
        pass();

    return false;
}

/** Also where it was the frame's own. */
void TessarinEditor::focusOfChildComponentChanged (FocusChangeType cause)
{
    if (hasKeyboardFocus (true))
        return;

    // A control that is disabled lets go of the keyboard, and no key would be heard any more. When another window
    // takes it, JUCE names the mouse as the cause.
    if (cause == focusChangedDirectly && getCurrentlyFocusedComponent() == nullptr)
        grabKeyboardFocus();
    else
        clickFocus.focusWasLost();
}

void TessarinEditor::setScaleFactor (float newScale)
{
    if (newScale > 0.0f)
        hostScale = newScale;

    applyScale();
}

void TessarinEditor::applyScale()
{
    auto userScale = processor.settings.getDoubleValue (Settings::scaleKey, Settings::defaultScale);

    // The file can be written by hand. An X11 window has fewer than 32768 pixels a side, and below a quarter nobody
    // finds the settings to undo it.
    constexpr auto leastScale = 0.25, greatestScale = 8.0;

    if (! (userScale >= leastScale && userScale <= greatestScale))
        userScale = Settings::defaultScale;

    // The base class keeps the transform as the host's, so it gets the product.
    AudioProcessorEditor::setScaleFactor (static_cast<float> (static_cast<double> (hostScale) * userScale));
}

void TessarinEditor::loadTheme()
{
    lookAndFeel->lookAndFeel.setTheme (
        processor.settings.getValue (Settings::themeKey, Settings::defaultTheme));
    sendLookAndFeelChange();
    repaint();
}

void TessarinEditor::presetSaved (Preset)
{
    savePresetModal.setVisible (false);
}

void TessarinEditor::changeListenerCallback (juce::ChangeBroadcaster* source)
{
    if (source == &processor.licenceManager)
    {
        showLicence();
        return;
    }

    if (source != &processor.settings)
        return;

    processor.settings.refresh();
    applyScale();
    loadTheme();
}

void TessarinEditor::showHeardSide()
{
    tooltipPanel.setMark (processor.editHistory.getHeardSide() == EditHistory::Side::b ? "B" : "");
}

void TessarinEditor::showLicence()
{
    const auto& licence = processor.licenceManager;
    tooltipPanel.statusLabel.setText (licence.getStatusText(), juce::dontSendNotification);
    licenceOverlay.setText (licence.getOverlayText());
    licenceNotice.setText (licence.getNoticeText());
    licenceDialog.refresh();
}

} // namespace tessarin
