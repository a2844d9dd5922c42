#pragma once

#include "XlibBesideGtest.h"

#include <pluginterfaces/gui/iplugview.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivsteditcontroller.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>

// The interfaces are counted and have no destructors to call.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/** The module's library, loaded and entered; left and unloaded in the end. */
class LoadedModule
{
public:
    explicit LoadedModule (const std::filesystem::path& library);
    ~LoadedModule();

    LoadedModule (const LoadedModule&) = delete;
    LoadedModule& operator= (const LoadedModule&) = delete;

    [[nodiscard]] Steinberg::IPluginFactory& getFactory() const { return *factory; }

private:
    void* handle = nullptr;
    Steinberg::IPluginFactory* factory = nullptr;
};

/** A host's event loop for the descriptors of its plug-ins. */
class EventLoop final : public Steinberg::Linux::IRunLoop
{
public:
    /** Hears what has come to the descriptors, or comes within some milliseconds, and nothing more. */
    void serve (int milliseconds = 0);

    /** Serves until the condition holds. False if it never does within ten seconds. */
    template <typename Condition>
    [[nodiscard]] bool serveUntil (Condition&& holds)
    {
        for (auto turns = 0; turns < 1000; ++turns)
        {
            if (holds())
                return true;

            serve (10);
        }

        return false;
    }

    [[nodiscard]] bool isUnused() const { return handlers.empty(); }

private:
    using Handler = Steinberg::Linux::IEventHandler;
    using Timer = Steinberg::Linux::ITimerHandler;

    Steinberg::tresult PLUGIN_API registerEventHandler (Handler*, Steinberg::Linux::FileDescriptor) override;
    Steinberg::tresult PLUGIN_API unregisterEventHandler (Handler*) override;

    /** JUCE has timers of its own. */
    Steinberg::tresult PLUGIN_API registerTimer (Timer*, Steinberg::Linux::TimerInterval) override
    {
        return Steinberg::kNotImplemented;
    }

    Steinberg::tresult PLUGIN_API unregisterTimer (Timer*) override { return Steinberg::kNotImplemented; }

    Steinberg::tresult PLUGIN_API queryInterface (const Steinberg::TUID, void**) override;

    Steinberg::uint32 PLUGIN_API addRef() override { return 1; }

    Steinberg::uint32 PLUGIN_API release() override { return 1; }

    std::map<int, Handler*> handlers;
};

/** An instance of the plug-in in a host that knows neither JUCE nor its handlers: what is not caught in the module ends
    the process, as in most workstations. The window lies in one of the host's, on a connection of the host's. */
class BareHost
{
public:
    /** Without a loop the host offers none to the plug-in. */
    BareHost (const LoadedModule&, Display*, EventLoop*);
    ~BareHost();

    /** What the plug-in may call; before its window is opened. */
    void setHandler (Steinberg::Vst::IComponentHandler& handler)
    {
        controller->setComponentHandler (&handler);
    }

    /** Empty if there is none. */
    [[nodiscard]] std::u16string getTitleOf (Steinberg::Vst::ParamID) const;

    /** In a new window of the host's, mapped. */
    void openWindow();

    /** The window, and then the host's around it. */
    void closeWindow();

    /** What most hosts would call a fault of theirs: the window of the host goes with the plug-in's in it. */
    void destroyHostsWindow();

    void resizeWindow (int width, int height);

    /** Tells the view of a size. False if it refuses. */
    [[nodiscard]] bool setViewSize (int width, int height);

    [[nodiscard]] Window getHostsWindow() const { return window; }

    /** JUCE's window in the host's; 0 if there is none. */
    [[nodiscard]] Window getPluginsWindow() const;

private:
    class Frame;

    Display* display;
    std::unique_ptr<Frame> frame;
    Steinberg::Vst::IComponent* component = nullptr;
    Steinberg::Vst::IEditController* controller = nullptr;
    Steinberg::IPlugView* view = nullptr;
    Window window = 0;
};
