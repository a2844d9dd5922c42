#pragma once

#include <juce_events/juce_events.h>

#include <atomic>

namespace tessarin
{

/** Answers what the product asks of licensing. Without a licence check behind it, as shipped, everything is
    permitted.

    Broadcasts a change after every `setStatus`. Message thread, but for `isAudioBlocked`, `isStateFrozen` and
    `isRestoreRefused`, which any thread may ask.
*/
class LicenceManager : public juce::ChangeBroadcaster
{
public:
    struct Status
    {
        bool audioBlocked = false;
        bool stateFrozen = false;
        bool restoreRefused = false;

        /** Why saving presets is refused; empty: it is not. */
        juce::String saveRefusal;

        juce::String registeredName;
        juce::String statusText;

        /** Stands over the whole editor but its dialogs, and keeps the mouse from it; empty: there is none. */
        juce::String overlayText;

        /** Stands over the top of the editor's content, and takes no mouse; empty: there is none. */
        juce::String noticeText;
        bool showLicenceButton = false;
    };

    void setStatus (const Status& newStatus)
    {
        status = newStatus;
        audioBlocked = status.audioBlocked;
        stateFrozen = status.stateFrozen;
        restoreRefused = status.restoreRefused;
        sendChangeMessage();
    }

    [[nodiscard]] bool isAudioBlocked() const noexcept
    {
        return audioBlocked.load (std::memory_order_relaxed);
    }

    /** A frozen plug-in hands back the last state that it was given. */
    [[nodiscard]] bool isStateFrozen() const noexcept { return stateFrozen; }

    [[nodiscard]] bool isRestoreRefused() const noexcept { return restoreRefused; }

    [[nodiscard]] bool isSavingRefused() const { return status.saveRefusal.isNotEmpty(); }

    [[nodiscard]] const juce::String& getSaveRefusal() const { return status.saveRefusal; }

    [[nodiscard]] const juce::String& getRegisteredName() const { return status.registeredName; }

    [[nodiscard]] const juce::String& getStatusText() const { return status.statusText; }

    [[nodiscard]] const juce::String& getOverlayText() const { return status.overlayText; }

    [[nodiscard]] const juce::String& getNoticeText() const { return status.noticeText; }

    [[nodiscard]] bool isLicenceButtonVisible() const { return status.showLicenceButton; }

private:
    Status status;
    std::atomic<bool> audioBlocked { false };
    std::atomic<bool> stateFrozen { false };
    std::atomic<bool> restoreRefused { false };
};

} // namespace tessarin
