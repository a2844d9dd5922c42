#include "ToastManager.h"

#include <algorithm>

namespace tessarin
{

ToastManager::ToastManager()
{
    // While a message is up, the keyboard stays here, as the mouse does.
    setWantsKeyboardFocus (true);
    setFocusContainerType (FocusContainerType::keyboardFocusContainer);
}

void ToastManager::showToast (const juce::String& text, ToastType type, bool dismissible)
{
    const auto isError = type == toastError || type == toastFatal;
    const auto shownText = isError ? "ERROR: " + text : text;

    juce::Logger::writeToLog (shownText);
    juce::AccessibilityHandler::postAnnouncement (shownText,
                                                  juce::AccessibilityHandler::AnnouncementPriority::medium);
    toasts.add (std::make_unique<Toast> (shownText, type, dismissible))->addChangeListener (this);
    layOutIfAdopted();
}

void ToastManager::showError (const juce::String& text)
{
    showToast (text, toastError, true);
}

void ToastManager::paint (juce::Graphics& g)
{
    toFront (false);
    g.fillAll (juce::Colour (0xcc000000));
}

void ToastManager::resized()
{
    layOutIfAdopted();
}

void ToastManager::parentHierarchyChanged()
{
    layOutIfAdopted();
}

void ToastManager::passKeyboardOn()
{
    const auto first =
        std::find_if (toasts.begin(), toasts.end(), [] (const Toast* toast) { return toast->dismissible; });

    if (first != toasts.end())
        (*first)->grabKeyboardFocus();
}

bool ToastManager::keyPressed (const juce::KeyPress& key)
{
    if (key.isKeyCode (juce::KeyPress::tabKey))
        return hasKeyboardFocus (false);

    // The next key can come before a message that is dismissed has gone.
    return std::any_of (toasts.begin(), toasts.end(),
                        [&key] (Toast* toast) { return toast->keyPressed (key); });
}

void ToastManager::changeListenerCallback (juce::ChangeBroadcaster* source)
{
    const auto isSource = [source] (const juce::ChangeBroadcaster* toast) { return toast == source; };
    const auto dismissed = std::find_if (toasts.begin(), toasts.end(), isSource);

    if (dismissed == toasts.end())
        return;

    toasts.removeObject (*dismissed);
    layOutIfAdopted();
}

void ToastManager::layOutIfAdopted()
{
    if (getParentComponent() == nullptr)
        return;

    for (auto i = 0; i < toasts.size(); ++i)
    {
        auto& toast = *toasts[i];
        addAndMakeVisible (toast);
        toast.setBounds (10, 20 + 60 * i, getWidth() - 20, 50);
    }

    setVisible (! toasts.isEmpty());
    toFront (false);

    if (hasKeyboardFocus (false))
        passKeyboardOn();
}

} // namespace tessarin
