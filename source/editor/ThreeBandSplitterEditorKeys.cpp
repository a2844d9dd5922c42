// How the keyboard reaches the band editor's bars and buttons, what it does there, and their menus.

#include "common/Rounding.h"
#include "common/Sections.h"
#include "ThreeBandSplitterEditor.h"
#include "widgets/ParameterGesture.h"
#include "widgets/ParameterMenu.h"
#include "widgets/PressKey.h"

using juce::KeyPress;

//======================================================================================================================
// Focus

const ThreeBandSplitterEditor::Spot* ThreeBandSplitterEditor::getFocusedSpot() const
{
    return hasKeyboardFocus (true) ? &spots[static_cast<size_t> (focusedPlace)] : nullptr;
}

/** The tab key enters at the end that it comes from. The focus can also come back from another window. */
void ThreeBandSplitterEditor::focusGained (FocusChangeType cause)
{
    const auto isBackwards = juce::ModifierKeys::currentModifiers.isShiftDown();
    focusSpot (cause != focusChangedByTabKey ? focusedPlace
               : isBackwards                 ? static_cast<int> (spots.size()) - 1
                                             : 0);
}

void ThreeBandSplitterEditor::focusLost (FocusChangeType)
{
    setTitle ("Bands");
}

void ThreeBandSplitterEditor::focusSpot (int place)
{
    focusedPlace = place;
    setTitle (getSpotTitle (spots[static_cast<size_t> (place)]));

    if (auto* handler = getAccessibilityHandler())
        handler->notifyAccessibilityEvent (juce::AccessibilityEvent::titleChanged);
}

juce::String ThreeBandSplitterEditor::getSpotTitle (const Spot& spot) const
{
    if (spot.kind == Spot::bar)
        return spot.index == 0 ? "Low/Mid Crossover" : "Mid/High Crossover";

    return sectionTable[spot.index].nameOf (spot.kind == Spot::mute   ? "Mute"
                                            : spot.kind == Spot::solo ? "Solo"
                                                                      : "Enable");
}

bool ThreeBandSplitterEditor::showsFrequency (size_t bar) const
{
    const auto* focused = getFocusedSpot();
    const auto hasFocus = focused != nullptr && focused->kind == Spot::bar && focused->index == bar;

    return isEnabled() && (hasFocus || hoveredHandle == static_cast<int> (bar));
}

//======================================================================================================================
// Keys

bool ThreeBandSplitterEditor::keyPressed (const KeyPress& key)
{
    const auto* spot = getFocusedSpot();

    if (spot == nullptr || ! isEnabled())
        return false;

    if (key.isKeyCode (KeyPress::tabKey))
    {
        const auto next = focusedPlace + (key.getModifiers().isShiftDown() ? -1 : 1);
        const auto isInside = juce::isPositiveAndBelow (next, static_cast<int> (spots.size()));

        if (isInside)
            focusSpot (next);

        return isInside;
    }

    if (spot->kind != Spot::bar)
    {
        const auto isUsed = luna::isPress (key);

        if (isUsed)
            press (*spot);

        return isUsed;
    }

    if (steps[spot->index] && steps[spot->index]->keyPressed (key))
        return true;

    const auto typed = luna::ParameterSteps::getTypedBy (key);

    if (typed)
        typeFrequency (spot->index, *typed);

    return typed.has_value();
}

/** A switch changes over. The solo of another band moves here in one step. */
void ThreeBandSplitterEditor::press (const Spot& spot)
{
    auto* parameter = getParameter (spot);

    if (parameter == nullptr)
        return;

    const auto& band = bands[spot.index];
    const auto newSolo = static_cast<float> (band.getSoloBand() == band.index ? Solo::none : band.index);

    luna::setInOneGesture (*parameter, spot.kind == Spot::solo ? parameter->convertTo0to1 (newSolo)
                                       : roundToSwitch (parameter->getValue()) ? 0.0f
                                                                               : 1.0f);
}

void ThreeBandSplitterEditor::typeFrequency (size_t bar, const juce::String& typed)
{
    if (! steps[bar])
        return;

    auto& field = fields[bar];

    if (field == nullptr)
        field = std::make_unique<luna::ValueField> (*this, [this, bar] (const auto& text)
                                                    { return steps[bar]->type (text); });

    refreshBandBounds();
    field->open (getReadoutBounds (bar), steps[bar]->getText(), typed);
}

void ThreeBandSplitterEditor::showMenu (const Spot& spot, juce::Point<int> placeOnScreen)
{
    auto* parameter = getParameter (spot);

    if (parameter == nullptr)
        return;

    std::function<void()> type;

    if (spot.kind == Spot::bar)
        type = [this, bar = spot.index] { typeFrequency (bar, {}); };

    luna::ParameterMenu::show (*this, placeOnScreen, *parameter, std::move (type));
}
