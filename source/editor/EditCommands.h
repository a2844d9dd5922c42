#pragma once

#include "core/EditHistory.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace tessarin
{

/** The keys and menu items of the history: undo, redo, A, B, and the copy of A to B. Message thread. */
class EditCommands final
{
public:
    /** The history outlives this. `onSideChange` hears when another side is heard. */
    EditCommands (EditHistory&, std::function<void()> onSideChange);

    [[nodiscard]] static bool isCommand (const juce::KeyPress&);

    /** Does nothing for a key that is none. */
    void perform (const juce::KeyPress&);

    void addTo (juce::PopupMenu&);

private:
    struct Command;
    static const Command* find (const juce::KeyPress&);
    void listenTo (EditHistory::Side);

    EditHistory& history;
    const std::function<void()> onSideChange;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (EditCommands)
};

} // namespace tessarin
