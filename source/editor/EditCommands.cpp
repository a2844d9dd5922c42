#include "EditCommands.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tessarin
{

namespace
{
using juce::KeyPress, juce::ModifierKeys;

const KeyPress undoKey { 'z', ModifierKeys::commandModifier, 0 };
const KeyPress redoKey { 'z', ModifierKeys::commandModifier | ModifierKeys::shiftModifier, 0 };
const KeyPress copyKey { 'c', ModifierKeys::commandModifier, 0 };

/** Also with Shift, which some keyboards need for a digit. */
bool isCtrlAnd (char digit, const KeyPress& key)
{
    const auto mods = key.getModifiers();
    return key.isKeyCode (digit) && mods.isCommandDown() && ! mods.isAltDown();
}

juce::PopupMenu::Item makeItem (const juce::String& verb, const juce::String& name, const KeyPress& key)
{
    juce::PopupMenu::Item item (name.isEmpty() ? verb : verb + ": " + name);
    item.shortcutKeyDescription = key.getTextDescription();
    item.isEnabled = name.isNotEmpty();
    return item;
}
} // namespace

struct EditCommands::Command
{
    bool (*isCalledBy) (const KeyPress&);
    void (*perform) (EditCommands&);
};

const EditCommands::Command* EditCommands::find (const KeyPress& key)
{
    using Side = EditHistory::Side;

    static constexpr std::array<Command, 5> commands {
        { { [] (const KeyPress& k) { return k == undoKey; },
            [] (EditCommands& self) { self.history.undo(); } },
          { [] (const KeyPress& k) { return k == redoKey; },
            [] (EditCommands& self) { self.history.redo(); } },
          { [] (const KeyPress& k) { return isCtrlAnd ('1', k); },
            [] (EditCommands& self) { self.listenTo (Side::a); } },
          { [] (const KeyPress& k) { return isCtrlAnd ('2', k); },
            [] (EditCommands& self) { self.listenTo (Side::b); } },
          { [] (const KeyPress& k) { return k == copyKey; },
            [] (EditCommands& self) { self.history.copyAToB(); } } }
    };

    const auto* found = std::find_if (commands.begin(), commands.end(),
                                      [&] (const Command& command) { return command.isCalledBy (key); });
    return found != commands.end() ? found : nullptr;
}

EditCommands::EditCommands (EditHistory& h, std::function<void()> hearsOfSides)
    : history (h), onSideChange (std::move (hearsOfSides))
{
}

bool EditCommands::isCommand (const KeyPress& key)
{
    return find (key) != nullptr;
}

void EditCommands::perform (const KeyPress& key)
{
    if (const auto* command = find (key))
        command->perform (*this);
}

void EditCommands::listenTo (EditHistory::Side side)
{
    history.listenTo (side);
    onSideChange();
}

void EditCommands::addTo (juce::PopupMenu& menu)
{
    // The history outlives every window.
    auto undo = makeItem ("Undo", history.getUndoName(), undoKey);
    undo.setAction ([&h = history] { h.undo(); });
    menu.addItem (std::move (undo));

    auto redo = makeItem ("Redo", history.getRedoName(), redoKey);
    redo.setAction ([&h = history] { h.redo(); });
    menu.addItem (std::move (redo));
}

} // namespace tessarin
