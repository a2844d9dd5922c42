#include "ScriptControl.h"

#include "Failure.h"
#include "PictureFile.h"
#include "PluginSettings.h"

#include <poll.h>
#include <unistd.h>

#include <iostream>
#include <mutex>

namespace
{
/** Any thread. */
void print (const juce::String& line)
{
    static std::mutex mutex;
    const std::lock_guard lock (mutex);
    std::cout << line << std::endl;
}

juce::String describe (const HostedParameter& parameter)
{
    return juce::String (parameter.getValue(), 6) + " " + parameter.getText();
}

void saveState (PluginHost& host, const juce::File& file)
{
    const auto block = host.getState();

    if (! file.replaceWithData (block.getData(), block.getSize()))
        throw Failure (file.getFullPathName() + ": cannot be written");
}
} // namespace

/** Tells what the module does to one parameter. */
struct ScriptControl::Watch final : juce::AudioProcessorParameter::Listener
{
    Watch (juce::AudioProcessorParameter& p, juce::String name) : parameter (p), id (std::move (name))
    {
        parameter.addListener (this);
    }

    ~Watch() override { parameter.removeListener (this); }

    void parameterValueChanged (int, float value) override
    {
        print ("value " + id + " " + juce::String (value, 6));
    }

    void parameterGestureChanged (int, bool isBeginning) override
    {
        print ((isBeginning ? "begin " : "end ") + id);
    }

    juce::AudioProcessorParameter& parameter;
    juce::String id;
};

ScriptControl::ScriptControl (OpenSession& s) : session (s)
{
    const auto& raw = session.host.getInstance().getParameters();
    auto index = 0;

    for (const auto& parameter : session.host.getParameters())
    {
        if (! parameter.isAddedByWrapper())
            watches.push_back (std::make_unique<Watch> (*raw[index], parameter.getId()));

        ++index;
    }

    const auto onInput = [this] (int) { inputReady(); };
    juce::LinuxEventLoop::registerFdCallback (STDIN_FILENO, onInput, POLLIN | POLLHUP);
    print ("ready " + describeWindow());
}

ScriptControl::~ScriptControl()
{
    juce::LinuxEventLoop::unregisterFdCallback (STDIN_FILENO);
}

void ScriptControl::inputReady()
{
    char bytes[4096];
    const auto length = ::read (STDIN_FILENO, bytes, sizeof (bytes));

    if (length <= 0)
    {
        session.end();
        return;
    }

    for (const auto* byte = bytes; byte != bytes + length; ++byte)
    {
        if (*byte != '\n')
        {
            pending.writeByte (*byte);
            continue;
        }

        const auto line = pending.toString();
        pending.reset();
        obey (line);
    }
}

void ScriptControl::obey (const juce::String& line)
{
    try
    {
        print (("ok "
                + answer (line.upToFirstOccurrenceOf (" ", false, false),
                          line.fromFirstOccurrenceOf (" ", false, false)))
                   .trimEnd());
    }
    catch (const Failure& failure)
    {
        print (juce::String ("failed ") + failure.what());
    }
}

juce::String ScriptControl::answer (const juce::String& command, const juce::String& rest)
{
    if (command == "get")
        return describe (session.host.getParameter (rest));

    if (command == "set")
        applySetting (session.host, rest);
    else if (command == "preset")
        applyPreset (session.host, rest);
    else if (command == "load")
        applyState (session.host, fileFromOperand (rest));
    else if (command == "save")
        saveState (session.host, fileFromOperand (rest));
    else if (command == "size")
    {
        const auto size = EditorSize::fromText (rest);
        session.getWindow().setEditorSize (size.width, size.height);
    }
    else if (command == "stop")
        session.audio.stop();
    else if (command == "start")
        session.audio.start();
    else if (command == "automate")
        session.audio.automate();
    else if (command == "close")
        session.closeEditor ([] { print ("closed"); });
    else if (command == "open")
        session.openEditor();
    else if (command == "window")
        return describeWindow();
    else if (command == "look")
        return look (rest);
    else if (command == "picture")
        savePicture (session.getWindow().takePicture(), fileFromOperand (rest), true);
    else if (command == "quit")
        session.end();
    else
        throw Failure ("unknown command \"" + command + "\"");

    return {};
}

juce::String ScriptControl::describeWindow()
{
    const auto area = session.getWindow().getViewArea();
    return juce::String (session.getWindow().getId()) + " " + juce::String (area.getWidth()) + "x"
           + juce::String (area.getHeight());
}

juce::String ScriptControl::look (const juce::String& text)
{
    const auto area = juce::Rectangle<int>::fromString (text);
    auto& window = session.getWindow();

    if (area.isEmpty() || ! window.getViewArea().withZeroOrigin().contains (area))
        throw Failure ("\"" + text + "\" is no area of the view");

    const auto picture = window.takePicture (area);
    const juce::Image::BitmapData pixels (picture, juce::Image::BitmapData::readOnly);
    juce::uint64 hash = 14695981039346656037u;

    for (auto y = 0; y < pixels.height; ++y)
        for (auto x = 0; x < pixels.width; ++x)
            hash = (hash ^ pixels.getPixelColour (x, y).getARGB()) * 1099511628211u;

    return juce::String::toHexString (static_cast<juce::int64> (hash));
}
