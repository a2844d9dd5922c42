#include "SettingsModal.h"

#include "common/FontHeights.h"
#include "settings/Settings.h"
#include "settings/TessarinLogger.h"

#include <array>

namespace tessarin
{

namespace
{
struct ScaleChoice
{
    const char* text;
    float factor;
};

/** Their identifiers in the box count from 1. */
constexpr std::array<ScaleChoice, 6> scaleChoices { { { "Tiny", 0.5f },
                                                      { "Small", 0.75f },
                                                      { "Normal", 1.0f },
                                                      { "Big", 1.25f },
                                                      { "Bigger", 1.5f },
                                                      { "Massive", 2.0f } } };

/** 0, which is no identifier, for any other factor. */
int getScaleId (double factor)
{
    for (size_t i = 0; i < scaleChoices.size(); ++i)
        if (juce::exactlyEqual (scaleChoices[i].factor, static_cast<float> (factor)))
            return static_cast<int> (i) + 1;

    return 0;
}

double getScale (int id)
{
    const auto index = static_cast<size_t> (id - 1);
    return index < scaleChoices.size() ? static_cast<double> (scaleChoices[index].factor)
                                       : Settings::defaultScale;
}
} // namespace

SettingsModal::SettingsModal (SettingsFile& settings, ToastManager& toasts)
    : ModalWindow ("Settings"),
      toastManager (toasts),
      properties (settings),
      fileListener (Settings::getFile())
{
    addChildren();
    fillBoxes();
    showSettings();
    fileListener.addChangeListener (this);
}

SettingsModal::~SettingsModal()
{
    fileListener.removeChangeListener (this);
}

void SettingsModal::addChildren()
{
    // A click on the panel leaves the keyboard with the control that has it.
    setMouseClickGrabsKeyboardFocus (false);
    panel.setMouseClickGrabsKeyboardFocus (false);

    for (auto* label : { &versionLabel, &scaleLabel })
    {
        addAndMakeVisible (*label);
        label->setFont (juce::FontOptions (luna::FontHeights::control));
        label->setBorderSize ({});
        label->setInterceptsMouseClicks (false, false);
    }

    versionLabel.setText (juce::String ("v") + JucePlugin_VersionString, juce::dontSendNotification);
    versionLabel.setJustificationType (juce::Justification::centredRight);
    scaleLabel.setText ("GUI Scale", juce::dontSendNotification);
    scaleLabel.setJustificationType (juce::Justification::centredLeft);
    themeLabel.setText ("Theme", juce::dontSendNotification);

    addAndMakeVisible (scaleBox);
    scaleBox.setTitle (scaleLabel.getText());
    scaleBox.setMouseClickGrabsKeyboardFocus (false);
    addAndMakeVisible (logButton);
    logButton.addListener (this);
}

void SettingsModal::fillBoxes()
{
    for (size_t i = 0; i < scaleChoices.size(); ++i)
        scaleBox.addItem (scaleChoices[i].text, static_cast<int> (i) + 1);

    themeBox.addItemList (themeNames, 1);
    scaleBox.addListener (this);
    themeBox.addListener (this);
}

void SettingsModal::showSettings()
{
    const auto scale = properties.getDoubleValue (Settings::scaleKey, Settings::defaultScale);
    scaleBox.setSelectedId (getScaleId (scale), juce::dontSendNotification);

    const auto theme = properties.getValue (Settings::themeKey, Settings::defaultTheme);
    themeBox.setSelectedId (themeNames.indexOf (theme) + 1, juce::dontSendNotification);
}

void SettingsModal::resized()
{
    constexpr auto rowHeight = 20;
    constexpr auto itemWidth = 150;

    placePanel (contentHeight + 55 + 2 * margin);

    const auto x = panelBounds.getX() + margin;
    const auto y = panelBounds.getY() + margin;
    const auto width = juce::jmax (0, panelBounds.getWidth() - 2 * margin);

    versionLabel.setBounds (x, y - 4, width, rowHeight);
    scaleLabel.setBounds (x, y + 50, itemWidth, rowHeight);
    scaleBox.setBounds (x + 190, y + 50, itemWidth, rowHeight);
    logButton.setBounds (x + 95, y + 90, itemWidth, rowHeight);
}

void SettingsModal::visibilityChanged()
{
    scaleBox.toFront (false);
}

void SettingsModal::buttonClicked (juce::Button*)
{
    TessarinLogger::getDefaultFile().revealToUser();
}

void SettingsModal::comboBoxChanged (juce::ComboBox* box)
{
    if (box == &scaleBox)
    {
        properties.setValue (Settings::scaleKey, getScale (scaleBox.getSelectedId()));
    }
    else
    {
        properties.setValue (Settings::themeKey, themeNames[themeBox.getSelectedId() - 1]);
        setVisible (false);
    }

    properties.saveOrLog();
}

void SettingsModal::changeListenerCallback (juce::ChangeBroadcaster*)
{
    properties.refresh();
    showSettings();

    // The editor applies scale and theme.
    properties.sendChangeMessage();
}

} // namespace tessarin
