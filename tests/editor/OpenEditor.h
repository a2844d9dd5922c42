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

    void set (const juce::String& id, double value)
    {
        plugin.set (id, value);
        dispatchMessages();
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
        return eventually (
            [&]
            { return ! pixels::difference (before, pictureOf (component), before.getBounds()).isEmpty(); });
    }

    /** The parameters that this changes. */
    template <typename Action>
    std::string changedBy (Action&& action)
    {
        std::string changed;
        std::map<std::string, float> before;

        for (const auto& p : expected::parameters())
            before[p.id] = plugin.parameter (p.id).getValue();

        action();
        dispatchMessages();

        for (const auto& [id, value] : before)
            if (! juce::exactlyEqual (plugin.parameter (id).getValue(), value))
                changed += id + " ";

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
