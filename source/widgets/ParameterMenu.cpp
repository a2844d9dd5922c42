#include "ParameterMenu.h"

#include "widgets/EditItems.h"
#include "widgets/ParameterGesture.h"

namespace luna
{

namespace
{
void addHostsItems (juce::PopupMenu& menu, const juce::Component& component,
                    const juce::RangedAudioParameter& parameter)
{
    const auto* editor = component.findParentComponentOfClass<juce::AudioProcessorEditor>();
    const auto* host = editor != nullptr ? editor->getHostContext() : nullptr;
    const auto itsMenu = host != nullptr ? host->getContextMenuForParameter (&parameter) : nullptr;

    if (itsMenu == nullptr)
        return;

    const auto items = itsMenu->getEquivalentPopupMenu();

    if (items.getNumItems() > 0)
        menu.addSeparator();

    for (juce::PopupMenu::MenuItemIterator it (items); it.next();)
        menu.addItem (it.getItem());
}
} // namespace

ParameterMenu::ParameterMenu (juce::Component& c, juce::RangedAudioParameter* p, std::function<void()> type)
    : control (c), parameter (p), typeValue (std::move (type))
{
    control.addMouseListener (this, true);
}

ParameterMenu::~ParameterMenu()
{
    control.removeMouseListener (this);
}

void ParameterMenu::mouseDown (const juce::MouseEvent& event)
{
    if (parameter != nullptr && event.mods.isRightButtonDown() && ! event.mods.isLeftButtonDown())
        show (control, event.getScreenPosition(), *parameter, typeValue);
}

juce::PopupMenu::Options ParameterMenu::getOptionsFor (juce::Component& component)
{
    juce::Component* editor = component.findParentComponentOfClass<juce::AudioProcessorEditor>();
    return juce::PopupMenu::Options()
        .withParentComponent (editor != nullptr ? editor : component.getTopLevelComponent())
        .withDeletionCheck (component);
}

void ParameterMenu::show (juce::Component& component, juce::Point<int> placeOnScreen,
                          juce::RangedAudioParameter& parameter, std::function<void()> typeValue)
{
    const auto standard = parameter.getText (parameter.getDefaultValue(), 0);
    const auto isEnabled = component.isEnabled();
    juce::PopupMenu menu;

    if (typeValue)
        menu.addItem (
            "Type a value", isEnabled, false,
            [alive = juce::Component::SafePointer<juce::Component> (&component), type = std::move (typeValue)]
            {
                // A host may have changed the layout under the menu.
                if (alive != nullptr && alive->isShowing())
                    type();
            });

    // The parameter outlives every window.
    menu.addItem ("Default: " + standard, isEnabled, false,
                  [&parameter] { setInOneGesture (parameter, parameter.getDefaultValue()); });

    if (auto* items = component.findParentComponentOfClass<EditItems>())
    {
        menu.addSeparator();
        items->addEditItems (menu);
    }

    addHostsItems (menu, component, parameter);

    // Of a pixel, so that the menu hangs from it; one of nothing would put it beside and above too.
    const auto place = juce::Rectangle<int> (1, 1).withPosition (placeOnScreen);
    menu.showMenuAsync (getOptionsFor (component).withTargetScreenArea (place));
}

} // namespace luna
