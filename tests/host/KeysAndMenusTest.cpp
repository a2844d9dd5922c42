#include "BareHost.h"
#include "BareHostSupport.h"

#include <pluginterfaces/vst/ivstcontextmenu.h>

#include <cstdlib>

using namespace Steinberg;

namespace
{
/** What a host offers for a parameter: one item. */
class HostsMenu final : public Vst::IComponentHandler,
                        public Vst::IComponentHandler3,
                        public Vst::IContextMenu,
                        public Vst::IContextMenuTarget
{
public:
    static constexpr int32 tag = 77;
    Vst::ParamID askedFor = 0;
    int numExecuted = 0;

private:
    Vst::IContextMenu* PLUGIN_API createContextMenu (IPlugView*, const Vst::ParamID* parameter) override
    {
        askedFor = *parameter;
        return this;
    }

    int32 PLUGIN_API getItemCount() override { return 1; }

    tresult PLUGIN_API getItem (int32, Item& item, Vst::IContextMenuTarget** target) override
    {
        item = {};
        item.name[0] = u'A';
        item.tag = tag;
        *target = this;
        return kResultOk;
    }

    tresult PLUGIN_API executeMenuItem (int32 chosen) override
    {
        numExecuted += chosen == tag ? 1 : 100;
        return kResultOk;
    }

    tresult PLUGIN_API addItem (const Item&, Vst::IContextMenuTarget*) override { return kNotImplemented; }

    tresult PLUGIN_API removeItem (const Item&, Vst::IContextMenuTarget*) override { return kNotImplemented; }

    tresult PLUGIN_API popup (UCoord, UCoord) override { return kNotImplemented; }

    tresult PLUGIN_API beginEdit (Vst::ParamID) override { return kResultOk; }

    tresult PLUGIN_API performEdit (Vst::ParamID, Vst::ParamValue) override { return kResultOk; }

    tresult PLUGIN_API endEdit (Vst::ParamID) override { return kResultOk; }

    tresult PLUGIN_API restartComponent (int32) override { return kResultOk; }

    tresult PLUGIN_API queryInterface (const TUID id, void** object) override
    {
        const auto is = [id] (const TUID& other) { return FUnknownPrivate::iidEqual (id, other); };
        *object = is (Vst::IComponentHandler3_iid) ? static_cast<Vst::IComponentHandler3*> (this)
                  : is (FUnknown_iid) || is (Vst::IComponentHandler_iid)
                      ? static_cast<void*> (static_cast<Vst::IComponentHandler*> (this))
                      : nullptr;
        return *object != nullptr ? kResultOk : kNoInterface;
    }

    uint32 PLUGIN_API addRef() override { return 1; }

    uint32 PLUGIN_API release() override { return 1; }
};

/** A host with the module's window open. */
class KeysAndMenus : public testing::Test
{
protected:
    KeysAndMenus()
    {
        host.setHandler (menu);
        host.openWindow();
    }

    void SetUp() override
    {
        ASSERT_TRUE (loop.serveUntil ([this] { return isDrawn (display, host.getPluginsWindow()); }));
    }

    /** What happens at the screen, and what becomes of it. JUCE's menus take a click for a slip within a quarter of a
        second. */
    void user (const std::string& does)
    {
        ASSERT_EQ (std::system (("xdotool " + does).c_str()), 0);

        for (auto turn = 0; turn < 40; ++turn)
            loop.serve (10);
    }

    HostsErrors errors;
    Display* const display = errors.display;
    EventLoop loop;
    LoadedModule module { builtLibrary() };
    HostsMenu menu;
    BareHost host { module, display, &loop };
};

TEST_F (KeysAndMenus, AHostsItemsStandBelowOursInTheMenuOfAParameter)
{
    // The item stands below our one, undo and redo, with a line before each group.
    user ("mousemove 421 333 click 3");
    EXPECT_EQ (host.getTitleOf (menu.askedFor), u"Clipper Enable");
    user ("mousemove 461 424 click 1");
    EXPECT_EQ (menu.numExecuted, 1);
}

TEST_F (KeysAndMenus, AHostGetsTheKeysThatNobodyUsesInTheWindow)
{
    std::string heard;
    const auto strike = [&] (const std::string& key)
    {
        user ("key " + key);
        XSync (display, False);

        for (XEvent event;
             XCheckWindowEvent (display, host.getHostsWindow(), KeyPressMask | KeyReleaseMask, &event);)
            heard += std::string (event.type == KeyPress ? " +" : " -")
                     + XKeysymToString (XLookupKeysym (&event.xkey, 0));
    };
    XSelectInput (display, host.getHostsWindow(), KeyPressMask | KeyReleaseMask);
    XSync (display, False);
    user ("mousemove 25 360 click 1");
    strike ("space");
    strike ("F5");
    strike ("Tab");

    // Opens the browser, and closes it again.
    strike ("space");
    strike ("Escape");
    EXPECT_EQ (heard, " +space -space +F5 -F5");

    // A host that sends what it gets to the window with the focus does not get it again.
    press (display, host.getPluginsWindow(), "F6");
    strike ("F7");
    EXPECT_EQ (heard, " +space -space +F5 -F5 +F7 -F7");
}
} // namespace
