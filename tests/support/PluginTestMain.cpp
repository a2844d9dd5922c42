#include "TemporaryFolder.h"

#include <juce_events/juce_events.h>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>

namespace
{
/** JUCE unloads them at its end, after which a leak report could not name them, nor a suppression match. */
void keepScreenLibrariesLoaded()
{
    for (const auto* name : { "libX11.so.6", "libXext.so.6", "libXcursor.so.1", "libXinerama.so.1",
                              "libXrender.so.1", "libXrandr.so.2" })
        dlopen (name, RTLD_NOW | RTLD_NODELETE);
}
} // namespace

int main (int argc, char** argv)
{
    // Before JUCE starts: it looks up the home folder once.
    const TemporaryFolder home;
    home.makeHome();

    // What was freed holds no address any more, so that whoever is called after its end crashes here.
    mallopt (M_PERTURB, 0x5a);

    keepScreenLibrariesLoaded();
    testing::InitGoogleTest (&argc, argv);
    const juce::ScopedJuceInitialiser_GUI juceInitialiser;
    return RUN_ALL_TESTS();
}
