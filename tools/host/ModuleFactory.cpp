#include "ModuleFactory.h"

#include "Failure.h"

#include <dlfcn.h>
#include <pluginterfaces/base/ipluginbase.h>
#include <sys/utsname.h>

#include <array>

namespace
{
using ModuleEntry = bool (*) (void*);
using ModuleExit = bool (*)();
using GetFactory = Steinberg::IPluginFactory* (*) ();

/** The bundle's shared library for this processor, entered and, in the end, left again. */
class Library
{
public:
    explicit Library (const juce::File& bundle)
    {
        utsname machine {};
        uname (&machine);

        const auto file = bundle.getChildFile ("Contents/" + juce::String (machine.machine) + "-linux/"
                                               + bundle.getFileNameWithoutExtension() + ".so");

        handle = dlopen (file.getFullPathName().toRawUTF8(), RTLD_LOCAL | RTLD_NOW);

        if (handle == nullptr)
            throw Failure ("the module cannot be loaded: " + juce::String::fromUTF8 (dlerror()));

        if (find<ModuleEntry> ("ModuleEntry") == nullptr || find<ModuleExit> ("ModuleExit") == nullptr
            || find<GetFactory> ("GetPluginFactory") == nullptr)
        {
            dlclose (handle);
            throw Failure (file.getFullPathName() + " lacks one of the three exports of a VST3 module");
        }

        find<ModuleEntry> ("ModuleEntry") (handle);
    }

    ~Library()
    {
        find<ModuleExit> ("ModuleExit")();
        dlclose (handle);
    }

    template <typename Function>
    [[nodiscard]] Function find (const char* name) const
    {
        return reinterpret_cast<Function> (dlsym (handle, name));
    }

private:
    void* handle = nullptr;

    JUCE_DECLARE_NON_COPYABLE (Library)
};

template <size_t size>
juce::String toString (const Steinberg::char8 (&text)[size])
{
    return juce::String::fromUTF8 (text, static_cast<int> (strnlen (text, size)));
}

FactoryClass toFactoryClass (const Steinberg::PClassInfo2& info)
{
    return { juce::String::toHexString (info.cid, sizeof (info.cid), 0).toUpperCase(),
             toString (info.category),
             toString (info.subCategories),
             toString (info.name),
             toString (info.vendor),
             toString (info.version),
             toString (info.sdkVersion),
             info.cardinality };
}
} // namespace

FactoryInfo readFactory (const juce::File& module)
{
    const Library library (module);
    auto* factory = library.find<GetFactory> ("GetPluginFactory")();

    FactoryInfo result;
    Steinberg::PFactoryInfo info {};

    if (factory == nullptr || factory->getFactoryInfo (&info) != Steinberg::kResultOk)
        throw Failure ("the module's factory does not answer");

    result.vendor = toString (info.vendor);
    result.url = toString (info.url);
    result.email = toString (info.email);
    result.flags = info.flags;

    Steinberg::IPluginFactory2* factory2 = nullptr;
    if (factory->queryInterface (Steinberg::IPluginFactory2_iid, reinterpret_cast<void**> (&factory2))
        == Steinberg::kResultOk)
    {
        for (auto i = 0; i < factory2->countClasses(); ++i)
            if (Steinberg::PClassInfo2 entry {}; factory2->getClassInfo2 (i, &entry) == Steinberg::kResultOk)
                result.classes.push_back (toFactoryClass (entry));

        factory2->release();
    }

    factory->release();
    return result;
}
