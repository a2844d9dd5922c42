#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace luna
{

/** Of an editor that can take back what was done in it: what the menus of its controls offer for that. Message
    thread. */
class EditItems
{
public:
    virtual ~EditItems() = default;

    virtual void addEditItems (juce::PopupMenu&) = 0;
};

} // namespace luna
