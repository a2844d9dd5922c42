#pragma once

#include "core/PluginUnderTest.h"
#include "editor/OrvoAudioProcessorEditor.h"
#include "OffscreenWindow.h"
#include "support/Messages.h"
#include "support/TemporaryConfig.h"
#include "widgets/Pixels.h"

/** A plug-in with a factory preset, and its editor in a window that takes real mouse events. */
struct OpenEditor
{
    OpenEditor() { open(); }

    ~OpenEditor() { close(); }

    void open()
    {
        editor.reset (dynamic_cast<OrvoAudioProcessorEditor*> (plugin.processor.createEditorIfNeeded()));
        window = std::make_unique<OffscreenWindow> (*editor);
        dispatchMessages();
    }

    void close()
    {
        window.reset();
        plugin.processor.editorBeingDeleted (editor.get());
        editor.reset();
    }

    void reopen()
    {
        close();
        open();
    }

    void set (const juce::String& id, double value)
    {
        plugin.set (id, value);
        dispatchMessages();
    }

    /** The user's scale and the host's together. */
    bool hasScale (float factor) const
    {
        return editor->getTransform() == juce::AffineTransform::scale (factor);
    }

    /** From the left to the right. */
    std::vector<MultiModeClipperEditor*> shownPanels() const
    {
        std::vector<MultiModeClipperEditor*> shown;

        for (auto* child : editor->getChildren())
            if (auto* panel = dynamic_cast<MultiModeClipperEditor*> (child);
                panel != nullptr && panel->isVisible())
                shown.push_back (panel);

        return shown;
    }

    /** What the window shows of a component. */
    juce::Image pictureOf (const juce::Component& component)
    {
        const auto area = window->getLocalArea (&component, component.getLocalBounds());
        return window->render().getClippedImage (area).createCopy();
    }

    bool shows (const juce::Component& component, juce::Colour colour)
    {
        const auto picture = pictureOf (component);
        return pixels::count (picture, picture.getBounds(), colour) > 0;
    }

    /** Whether what the window shows of the component changes by itself after this. */
    template <typename Action>
    bool isMovedBy (const juce::Component& component, Action&& action)
    {
        const auto before = pictureOf (component);
        action();
        return eventually ([&] { return ! pixels::difference (before, pictureOf (component)).isEmpty(); });
    }

    /** The parameters that this changes. */
    template <typename Action>
    std::string changedBy (Action&& action)
    {
        std::string changed;
        const auto before = plugin.values();
        action();
        dispatchMessages();

        for (const auto& [id, value] : plugin.values())
            changed += value == before.at (id) ? "" : id + " ";

        return changed;
    }

    TemporaryConfig config;

    // Without any, the plug-in opens with a toast over everything.
    juce::File preset = config.addPreset (
        "Factory/Loud.tpre",
        stateText (entry ("in_gain", "6.0") + "<graph_modes clipper_single=\"1\" clipper_low_band=\"1\"/>"));
    PluginUnderTest plugin;
    std::unique_ptr<OrvoAudioProcessorEditor> editor;
    std::unique_ptr<OffscreenWindow> window;
};

/** A menu's items and submenus with their numbers; headings have 0. */
inline juce::String menuText (const juce::PopupMenu& menu)
{
    juce::StringArray items;

    for (juce::PopupMenu::MenuItemIterator it (menu); it.next();)
    {
        const auto& item = it.getItem();
        items.add (item.isSeparator          ? juce::String ("-")
                   : item.subMenu != nullptr ? item.text + " { " + menuText (*item.subMenu) + " }"
                                             : item.text + " " + juce::String (item.itemID));
    }

    return items.joinIntoString (", ");
}

/** Writes down what a host is told of one parameter. */
struct GestureRecorder final : public juce::AudioProcessorParameter::Listener
{
    explicit GestureRecorder (juce::RangedAudioParameter& parameterToWatch) : parameter (parameterToWatch)
    {
        parameter.addListener (this);
    }

    ~GestureRecorder() override { parameter.removeListener (this); }

    void parameterValueChanged (int, float value) override
    {
        const juce::String number (juce::roundToInt (parameter.convertFrom0to1 (value)));
        events.push_back (("=" + number).toStdString());
    }

    void parameterGestureChanged (int, bool starts) override { events.push_back (starts ? "begin" : "end"); }

    std::vector<std::string> events;
    juce::RangedAudioParameter& parameter;
};
