#include "BareHost.h"

#include <dlfcn.h>
#include <pluginterfaces/base/ipluginbase.h>
#include <pluginterfaces/vst/ivstmessage.h>
#include <poll.h>

#include <cstring>
#include <stdexcept>
#include <vector>

using namespace Steinberg;

namespace
{
template <typename Interface>
Interface* query (FUnknown& object, const TUID id)
{
    void* found = nullptr;

    if (object.queryInterface (id, &found) != kResultOk)
        throw std::runtime_error ("the plug-in lacks an interface");

    return static_cast<Interface*> (found);
}

/** As one of two interfaces, of which the first is everybody's. */
tresult answer (const TUID id, const TUID own, void* self, void** object)
{
    const auto isKnown = FUnknownPrivate::iidEqual (id, FUnknown_iid) || FUnknownPrivate::iidEqual (id, own);
    *object = isKnown ? self : nullptr;
    return isKnown ? kResultOk : kNoInterface;
}

void require (tresult result, const char* call)
{
    if (result != kResultOk)
        throw std::runtime_error (std::string ("the plug-in refuses ") + call);
}
} // namespace

LoadedModule::LoadedModule (const std::filesystem::path& library)
    : handle (dlopen (library.c_str(), RTLD_LOCAL | RTLD_NOW))
{
    if (handle == nullptr)
        throw std::runtime_error (dlerror());

    reinterpret_cast<bool (*) (void*)> (dlsym (handle, "ModuleEntry")) (handle);
    factory = reinterpret_cast<IPluginFactory* (*) ()> (dlsym (handle, "GetPluginFactory"))();
}

LoadedModule::~LoadedModule()
{
    factory->release();
    reinterpret_cast<bool (*)()> (dlsym (handle, "ModuleExit"))();
    dlclose (handle);
}

// --- The event loop -------------------------------------------------------------------------------------------

void EventLoop::serve (int milliseconds)
{
    std::vector<pollfd> waiting;

    for (const auto& [descriptor, handler] : handlers)
        waiting.push_back ({ descriptor, POLLIN, 0 });

    poll (waiting.data(), waiting.size(), milliseconds);

    for (const auto& entry : waiting)
        if (entry.revents != 0)
            // An event that came first may have taken this one's handler away.
            if (const auto found = handlers.find (entry.fd); found != handlers.end())
                found->second->onFDIsSet (entry.fd);
}

tresult PLUGIN_API EventLoop::registerEventHandler (Handler* handler, Linux::FileDescriptor descriptor)
{
    handlers[descriptor] = handler;
    return kResultOk;
}

tresult PLUGIN_API EventLoop::unregisterEventHandler (Handler* handler)
{
    return std::erase_if (handlers, [handler] (const auto& entry) { return entry.second == handler; }) > 0
               ? kResultOk
               : kResultFalse;
}

tresult PLUGIN_API EventLoop::queryInterface (const TUID id, void** object)
{
    return answer (id, Linux::IRunLoop_iid, this, object);
}

// --- The instance ---------------------------------------------------------------------------------------------

/** What the view knows of its host. */
class BareHost::Frame final : public IPlugFrame
{
public:
    Frame (BareHost& h, EventLoop* l) : host (h), loop (l) {}

private:
    tresult PLUGIN_API resizeView (IPlugView* asking, ViewRect* size) override
    {
        host.resizeWindow (size->getWidth(), size->getHeight());
        return asking->onSize (size);
    }

    tresult PLUGIN_API queryInterface (const TUID id, void** object) override
    {
        if (loop != nullptr && FUnknownPrivate::iidEqual (id, Linux::IRunLoop_iid))
            return static_cast<FUnknown*> (loop)->queryInterface (id, object);

        return answer (id, IPlugFrame_iid, this, object);
    }

    uint32 PLUGIN_API addRef() override { return 1; }

    uint32 PLUGIN_API release() override { return 1; }

    BareHost& host;
    EventLoop* loop;
};

BareHost::BareHost (const LoadedModule& module, Display* d, EventLoop* loop)
    : display (d), frame (std::make_unique<Frame> (*this, loop))
{
    auto& factory = module.getFactory();
    PClassInfo effect {};
    factory.getClassInfo (0, &effect);

    for (int32 i = 0; std::strcmp (effect.category, "Audio Module Class") != 0; ++i)
        require (factory.getClassInfo (i, &effect), "its class");

    void* made = nullptr;
    require (factory.createInstance (effect.cid, Vst::IComponent_iid, &made), "an instance");
    component = static_cast<Vst::IComponent*> (made);
    require (component->initialize (nullptr), "its start");

    TUID controllerClass;
    require (component->getControllerClassId (controllerClass), "its controller's class");
    require (factory.createInstance (controllerClass, Vst::IEditController_iid, &made), "a controller");
    controller = static_cast<Vst::IEditController*> (made);
    require (controller->initialize (nullptr), "its controller's start");

    auto* componentsEnd = query<Vst::IConnectionPoint> (*component, Vst::IConnectionPoint_iid);
    auto* controllersEnd = query<Vst::IConnectionPoint> (*controller, Vst::IConnectionPoint_iid);
    componentsEnd->connect (controllersEnd);
    controllersEnd->connect (componentsEnd);
    componentsEnd->release();
    controllersEnd->release();
}

BareHost::~BareHost()
{
    if (view != nullptr)
        closeWindow();

    controller->terminate();
    component->terminate();
    controller->release();
    component->release();
}

std::u16string BareHost::getTitleOf (Vst::ParamID parameter) const
{
    Vst::ParameterInfo info {};

    for (int32 i = 0; i < controller->getParameterCount(); ++i)
        if (controller->getParameterInfo (i, info) == kResultOk && info.id == parameter)
            return info.title;

    return {};
}

void BareHost::openWindow()
{
    view = controller->createView (Vst::ViewType::kEditor);
    view->setFrame (frame.get());

    ViewRect size;
    require (view->getSize (&size), "its size");

    // A window manager would have a say in where it is, and when.
    XSetWindowAttributes unmanaged {};
    unmanaged.override_redirect = True;
    window = XCreateWindow (display, DefaultRootWindow (display), 0, 0,
                            static_cast<unsigned> (size.getWidth()), static_cast<unsigned> (size.getHeight()),
                            0, CopyFromParent, InputOutput, nullptr, CWOverrideRedirect, &unmanaged);
    XMapWindow (display, window);
    XSync (display, False);

    require (view->attached (reinterpret_cast<void*> (window), kPlatformTypeX11EmbedWindowID), "its window");
}

void BareHost::closeWindow()
{
    view->removed();
    view->setFrame (nullptr);
    view->release();
    view = nullptr;
    destroyHostsWindow();
}

void BareHost::destroyHostsWindow()
{
    if (window == 0)
        return;

    XDestroyWindow (display, window);
    XSync (display, False);
    window = 0;
}

void BareHost::resizeWindow (int width, int height)
{
    if (window == 0)
        return;

    XResizeWindow (display, window, static_cast<unsigned> (width), static_cast<unsigned> (height));
    XSync (display, False);
}

bool BareHost::setViewSize (int width, int height)
{
    ViewRect size (0, 0, width, height);
    return view->onSize (&size) == kResultOk;
}

Window BareHost::getPluginsWindow() const
{
    Window root = 0, parent = 0, *children = nullptr;
    unsigned number = 0;

    if (window == 0 || XQueryTree (display, window, &root, &parent, &children, &number) == 0 || number == 0)
        return 0;

    const auto child = children[0];
    XFree (children);
    return child;
}
