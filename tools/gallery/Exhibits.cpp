#include "Exhibits.h"

#include "browser/FilterOptionsToggle.h"
#include "common/ParameterIds.h"
#include "common/Sections.h"
#include "dialogs/SavePresetModal.h"
#include "dialogs/SettingsModal.h"
#include "widgets/IconButton.h"
#include "widgets/ModalWindow.h"
#include "widgets/ParameterChoiceButtons.h"
#include "widgets/ParameterLabelSlider.h"
#include "widgets/RealtimeLabel.h"
#include "widgets/TooltipPanel.h"

#include <LunaBinary.h>

namespace
{
using Pose = std::function<void (OffscreenWindow&, juce::Component&)>;
using Make = std::function<std::unique_ptr<juce::Component>()>;

void hover (OffscreenWindow& window, juce::Component& widget)
{
    window.moveMouse (widget, widget.getLocalBounds().getCentre());
}

void press (OffscreenWindow& window, juce::Component& widget)
{
    window.pressMouse (widget, widget.getLocalBounds().getCentre());
}

void disable (OffscreenWindow&, juce::Component& widget)
{
    widget.setEnabled (false);
}

void focus (OffscreenWindow&, juce::Component& widget)
{
    widget.grabKeyboardFocus();
}

void switchOn (OffscreenWindow&, juce::Component& widget)
{
    dynamic_cast<juce::Button&> (widget).setToggleState (true, juce::dontSendNotification);
}

void hoverWhileOn (OffscreenWindow& window, juce::Component& widget)
{
    switchOn (window, widget);
    hover (window, widget);
}

void disableWhileOn (OffscreenWindow& window, juce::Component& widget)
{
    switchOn (window, widget);
    disable (window, widget);
}

/** Every state that mouse, keys and switches can bring a button into. */
std::vector<Exhibit> makeButtonStates (int width, int height, const Make& make)
{
    return { { "normal", width, height, make, {} },
             { "hover", width, height, make, hover },
             { "pressed", width, height, make, press },
             { "on", width, height, make, switchOn },
             { "on, hover", width, height, make, hoverWhileOn },
             { "focused", width, height, make, focus },
             { "disabled", width, height, make, disable },
             { "on, disabled", width, height, make, disableWhileOn } };
}

Sheet makeIconSheet()
{
    Sheet sheet { "IconButton", {} };

    const auto makeFrom = [] (const char* data, int size) -> Make
    {
        const auto length = static_cast<size_t> (size);
        return [data, length] { return std::make_unique<luna::IconButton> (data, length); };
    };

    sheet.exhibits =
        makeButtonStates (25, 20, makeFrom (LunaBinary::poweroff_svg, LunaBinary::poweroff_svgSize));

    for (auto i = 0; i < LunaBinary::namedResourceListSize; ++i)
    {
        const juce::String name (LunaBinary::namedResourceList[i]);

        if (! name.endsWith ("_svg"))
            continue;

        auto size = 0;
        const auto* data = LunaBinary::getNamedResource (name.toRawUTF8(), size);
        sheet.exhibits.push_back (
            { name.upToLastOccurrenceOf ("_svg", false, false), 25, 20, makeFrom (data, size), {} });
        sheet.exhibits.push_back ({ "larger", 40, 40, makeFrom (data, size), {} });
    }

    return sheet;
}

Sheet makeKnobSheet (juce::AudioProcessorValueTreeState& parameters)
{
    const auto makeAt = [&parameters] (double proportion, int layout) -> Make
    {
        return [&parameters, proportion, layout]
        {
            auto knob = std::make_unique<tessarin::ParameterLabelSlider> (
                "Threshold", sectionTable[SectionRow::single].idOf (ParameterIds::thresholdPrefix),
                parameters);
            knob->setLayout (layout);
            knob->slider.setValue (knob->slider.proportionOfLengthToValue (proportion),
                                   juce::sendNotificationSync);
            return knob;
        };
    };

    const auto onSlider = [] (const Pose& pose) -> Pose
    {
        return [pose] (auto& window, auto& widget)
        { pose (window, dynamic_cast<tessarin::ParameterLabelSlider&> (widget).slider); };
    };

    using Slider = tessarin::ParameterLabelSlider;

    return { "ParameterLabelSlider",
             { { "lowest", 60, 95, makeAt (0.0, Slider::rotary), {} },
               { "middle", 60, 95, makeAt (0.5, Slider::rotary), {} },
               { "highest", 60, 95, makeAt (1.0, Slider::rotary), {} },
               { "hover", 60, 95, makeAt (0.7, Slider::rotary), onSlider (hover) },
               { "disabled", 60, 95, makeAt (0.7, Slider::rotary), disable },
               { "name left", 160, 40, makeAt (0.7, Slider::nameLeftValueRight), {} },
               { "name right", 160, 40, makeAt (0.7, Slider::valueLeftNameRight), {} },
               { "name above", 160, 40, makeAt (0.7, Slider::nameAbove), {} },
               { "name beside", 700, 20, makeAt (0.7, Slider::nameBeside), {} } } };
}

Sheet makeComboBoxSheet()
{
    const auto make = []
    {
        auto box = std::make_unique<juce::ComboBox>();
        box->addItemList ({ "Hard", "Soft I", "A text that is too long for the box" }, 1);
        box->setSelectedId (2);
        return box;
    };

    return { "ComboBox",
             { { "normal", 150, 20, make, {} },
               { "hover", 150, 20, make, hover },
               { "focused", 150, 20, make, focus },
               { "disabled", 150, 20, make, disable },
               { "too long", 150, 20, make,
                 [] (auto&, auto& widget) { dynamic_cast<juce::ComboBox&> (widget).setSelectedId (3); } } } };
}

/** The rows of a popup menu, drawn by the look and feel without a window of their own. */
struct MenuRows : public juce::Component
{
    void paint (juce::Graphics& g) override
    {
        auto& look = getLookAndFeel();
        look.drawPopupMenuBackgroundWithOptions (g, getWidth(), getHeight(), {});

        auto area = getLocalBounds().reduced (1);
        look.drawPopupMenuSectionHeader (g, area.removeFromTop (22), "Clippers");

        const auto drawRow =
            [&] (const juce::String& text, bool isActive, bool isHighlighted, bool hasSubMenu)
        {
            look.drawPopupMenuItem (g, area.removeFromTop (22), false, isActive, isHighlighted,
                                    text.contains ("current"), hasSubMenu, text, {}, nullptr, nullptr);
        };

        drawRow ("Hard, current", true, false, false);
        drawRow ("Soft I, under the mouse", true, true, false);
        drawRow ("Soft II, disabled", false, false, false);
        look.drawPopupMenuItem (g, area.removeFromTop (5), true, true, false, false, false, {}, {}, nullptr,
                                nullptr);
        drawRow ("Factory", true, false, true);
    }
};

Sheet makeTextSheet()
{
    const auto makeLabel = [] { return std::make_unique<juce::Label> (juce::String(), "A label"); };

    const auto makeEditor = []
    {
        auto editor = std::make_unique<juce::TextEditor>();
        editor->setText ("Some text");
        return editor;
    };

    const auto makeEmptyEditor = []
    {
        auto editor = std::make_unique<juce::TextEditor>();
        editor->setTextToShowWhenEmpty ("Nothing yet", juce::Colours::grey);
        return editor;
    };

    const auto selectAll = [] (auto& window, auto& widget)
    {
        focus (window, widget);
        dynamic_cast<juce::TextEditor&> (widget).selectAll();
    };

    return { "Text",
             { { "label", 120, 20, makeLabel, {} },
               { "label, disabled", 120, 20, makeLabel, disable },
               { "editor", 160, 20, makeEditor, {} },
               { "editor, focused", 160, 20, makeEditor, focus },
               { "editor, selected", 160, 20, makeEditor, selectAll },
               { "editor, disabled", 160, 20, makeEditor, disable },
               { "editor, empty", 160, 20, makeEmptyEditor, {} } } };
}

Sheet makeRealtimeLabelSheet()
{
    static constexpr auto value = -14.25f;
    const auto make = []
    {
        return std::make_unique<RealtimeLabel> (&value, "Short Term",
                                                [] (float v) { return juce::String (v, 1); });
    };

    return { "RealtimeLabel", { { "normal", 90, 40, make, {} }, { "disabled", 90, 40, make, disable } } };
}

Sheet makeBadgeSheet()
{
    const auto make = [] { return std::make_unique<tessarin::CategoryBadge> ("Drums"); };
    const auto makeToggle = [] { return std::make_unique<tessarin::FilterOptionsToggle> ("Show", "Hide"); };

    const auto select = [] (const Pose& pose) -> Pose
    {
        return [pose] (auto& window, auto& widget)
        {
            dynamic_cast<tessarin::CategoryBadge&> (widget).setSelected (true, juce::dontSendNotification);

            if (pose)
                pose (window, widget);
        };
    };

    return { "CategoryBadge",
             { { "normal", 60, 20, make, {} },
               { "hover", 60, 20, make, hover },
               { "focused", 60, 20, make, focus },
               { "selected", 60, 20, make, select ({}) },
               { "selected, hover", 60, 20, make, select (hover) },
               { "selected, focused", 60, 20, make, select (focus) },
               { "too long", 40, 20, make, {} },
               { "toggle", 95, 20, makeToggle, {} } } };
}

Sheet makePanelSheet()
{
    const auto makePanel = [] (const juce::String& name, bool collapsible, bool collapsed) -> Make
    {
        return [=]
        {
            auto panel = std::make_unique<luna::Panel>();
            panel->setName (name);
            panel->collapsible = collapsible;
            panel->collapsed = collapsed;
            return panel;
        };
    };

    const auto makeStrip = []
    {
        auto strip = std::make_unique<luna::TooltipPanel>();
        strip->tooltipLabel.setText ("Threshold: The level above which the signal is clipped",
                                     juce::dontSendNotification);
        return strip;
    };

    return { "Panel",
             { { "named", 200, 100, makePanel ("Clipper", false, false), {} },
               { "nameless", 200, 100, makePanel ({}, false, false), {} },
               { "collapsible", 200, 100, makePanel ("Clipper", true, false), {} },
               { "collapsed", 200, 100, makePanel ("Clipper", true, true), {} },
               { "disabled", 200, 100, makePanel ("Clipper", false, false), disable },
               { "tooltip strip", 600, 30, makeStrip, {} } } };
}

Sheet makeToastSheet()
{
    using namespace tessarin;

    const auto makeToast = [] (const juce::String& text, ToastType type, bool dismissible) -> Make
    { return [=] { return std::make_unique<Toast> (text, type, dismissible); }; };

    return { "Toast",
             { { "error", 500, 50, makeToast ("ERROR: Couldn't save preset!", toastError, true), {} },
               { "success", 500, 50, makeToast ("Preset saved", toastSuccess, true), {} },
               { "focused", 500, 50, makeToast ("Preset saved", toastSuccess, true), focus },
               { "notice", 500, 50, makeToast ("The manual lies beside the presets", toastNotice, true), {} },
               { "fatal", 500, 50, makeToast ("ERROR: Something that stays", toastFatal, false), {} },
               { "too long",
                 300,
                 50,
                 makeToast (juce::String::repeatedString ("A long message. ", 9), toastError, true),
                 {} } } };
}

Sheet makeDialogSheet (OrvoAudioProcessor& processor)
{
    const auto makeSave = [&processor]
    {
        return std::make_unique<tessarin::SavePresetModal> (processor.presetManager, processor.licenceManager,
                                                            processor.toastManager);
    };

    const auto fillIn = [] (OffscreenWindow&, juce::Component& widget)
    {
        auto& dialog = dynamic_cast<tessarin::SavePresetModal&> (widget);
        dialog.nameField.setText ("Loud and Clear (2)");
        dialog.descriptionField.setText ("A text with more than one line,\nof which the first shows");
        dialog.categoriesField.setText ("Drums,Mastering");
        dialog.authorField.setText ("A name that is too long for its field");
        dialog.nameField.grabKeyboardFocus();
        dialog.nameField.selectAll();
    };

    const auto makeSettings = [&processor]
    { return std::make_unique<tessarin::SettingsModal> (processor.settings, processor.toastManager); };

    return { "ModalWindow",
             { { "save", 500, 420, makeSave, {} },
               { "save, filled in", 500, 420, makeSave, fillIn },
               { "settings", 500, 300, makeSettings, {} },
               { "settings, focused", 500, 300, makeSettings, focus } } };
}
} // namespace

std::vector<Sheet> makeSheets (OrvoAudioProcessor& processor)
{
    auto& parameters = processor.parameters;

    const auto makeChoice = [&parameters]
    {
        auto buttons = std::make_unique<luna::ParameterChoiceButtons> (ParameterIds::layout, parameters,
                                                                       toStringArray (Layout::names));
        return buttons;
    };

    const auto makeChoiceRow = [makeChoice]
    {
        auto buttons = makeChoice();
        buttons->orientation = luna::ParameterChoiceButtons::row;
        buttons->spacing = 5;
        return buttons;
    };

    std::vector<Sheet> sheets {
        { "TextButton",
          makeButtonStates (110, 20, [] { return std::make_unique<juce::TextButton> ("Save"); }) },
        { "BetterTextButton",
          makeButtonStates (110, 20,
                            [] { return std::make_unique<luna::BetterTextButton> ("Multi Band"); }) },
        makeIconSheet(),
        { "ParameterChoiceButtons",
          { { "column", 100, 80, makeChoice, {} },
            { "row", 440, 20, makeChoiceRow, {} },
            { "disabled", 100, 80, makeChoice, disable } } },
        makeKnobSheet (parameters),
        makeComboBoxSheet(),
        { "PopupMenu", { { "rows", 220, 117, [] { return std::make_unique<MenuRows>(); }, {} } } },
        makeTextSheet(),
        makeBadgeSheet(),
        makeRealtimeLabelSheet(),
        makePanelSheet(),
        makeToastSheet(),
        makeDialogSheet (processor),
    };

    for (auto& sheet : makeGraphSheets (processor))
        sheets.push_back (std::move (sheet));

    return sheets;
}
