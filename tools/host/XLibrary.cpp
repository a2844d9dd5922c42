#include "XLibrary.h"

#include "Failure.h"

#include <dlfcn.h>

void* findInLibrary (const char* library, const char* name)
{
    // Never closed: what X's libraries keep of a connection is in use until the process ends.
    if (auto* handle = dlopen (library, RTLD_NOW | RTLD_LOCAL); handle != nullptr)
        if (auto* function = dlsym (handle, name))
            return function;

    throw Failure (juce::String (library) + " cannot be loaded");
}
