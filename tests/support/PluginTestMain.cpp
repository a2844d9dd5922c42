#include <juce_events/juce_events.h>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace
{
/** A fresh home for the run, so that no test reads or writes the user's files. */
class TemporaryHome
{
public:
    TemporaryHome()
    {
        auto name = (std::filesystem::temp_directory_path() / "orvo-tests-XXXXXX").string();

        if (mkdtemp (name.data()) == nullptr)
            return;

        path = name;
        const auto config = path / ".config";
        std::filesystem::create_directory (config);
        setenv ("HOME", path.c_str(), 1);
        setenv ("XDG_CONFIG_HOME", config.c_str(), 1);
    }

    ~TemporaryHome()
    {
        std::error_code ignored;

        if (exists())
            std::filesystem::remove_all (path, ignored);
    }

    TemporaryHome (const TemporaryHome&) = delete;
    TemporaryHome& operator= (const TemporaryHome&) = delete;

    bool exists() const { return ! path.empty(); }

private:
    std::filesystem::path path;
};

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
    const TemporaryHome home;

    if (! home.exists())
    {
        std::fputs ("No temporary home folder could be made\n", stderr);
        return 1;
    }

    // What was freed holds no address any more, so that whoever is called after its end crashes here.
    mallopt (M_PERTURB, 0x5a);

    keepScreenLibrariesLoaded();
    testing::InitGoogleTest (&argc, argv);
    const juce::ScopedJuceInitialiser_GUI juceInitialiser;
    return RUN_ALL_TESTS();
}
