// usage: juce_lv2_helper BUNDLE/Orvo.so
// Writes the bundle's descriptions, by which hosts know the plug-in without loading it: first the module itself, then what
// its wrapper leaves out. One commit gives the same files on every machine.

#include "BundleDescription.h"
#include "scratch/TemporaryFolder.h"

#include <dlfcn.h>
#include <lv2/core/lv2.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

// A build with sanitizers must not end here for what its tests leave out by their suppressions.
extern "C"
{
    const char* __lsan_default_options();
    const char* __tsan_default_options();

    const char* __lsan_default_options()
    {
        return "detect_leaks=0:exitcode=0";
    }

    const char* __tsan_default_options()
    {
        return "report_bugs=0";
    }
}

namespace
{
/** By which JUCE's wrapper writes manifest.ttl, dsp.ttl and ui.ttl beside the module. */
struct Recall
{
    int (*writeFiles) (const char* library);
};

bool askModule (const char* library)
{
    auto* const handle = dlopen (library, RTLD_NOW | RTLD_LOCAL);

    if (handle == nullptr)
    {
        std::fprintf (stderr, "error: %s\n", dlerror());
        return false;
    }

    const auto getDescriptor = reinterpret_cast<LV2_Descriptor_Function> (dlsym (handle, "lv2_descriptor"));
    const auto* const descriptor = getDescriptor != nullptr ? getDescriptor (0) : nullptr;

    if (descriptor == nullptr || std::strcmp (descriptor->URI, ORVO_LV2_URI) != 0)
    {
        std::fprintf (stderr, "error: %s holds no plug-in of this name\n", library);
        return false;
    }

    const auto* const recall = static_cast<const Recall*> (
        descriptor->extension_data ("https://lv2-extensions.juce.com/turtle_recall"));
    return recall != nullptr && recall->writeFiles (library) == 0;
}
} // namespace

int main (int argc, char** argv)
{
    if (argc != 2)
    {
        std::fputs ("usage: juce_lv2_helper BUNDLE/Orvo.so\n", stderr);
        return 2;
    }

    try
    {
        // The module finds no folder of the builder's, no presets, and can write none.
        const TemporaryHome home;
        forbidDisplay();
        setenv ("XDG_CONFIG_HOME", "/dev/null", 1);

        if (! askModule (argv[1]))
            return 1;

        setenv ("XDG_CONFIG_HOME", home.path.c_str(), 1);
        completeBundle (std::filesystem::absolute (argv[1]).parent_path(), home.path);
    }
    catch (const std::exception& error)
    {
        std::fprintf (stderr, "error: %s\n", error.what());
        return 1;
    }

    return 0;
}
