#pragma once

#include <dlfcn.h>

#include <initializer_list>

/** They are unloaded with JUCE or with the plug-in, after which a leak report could not name them, nor a suppression
    match. */
inline void keepScreenLibrariesLoaded()
{
    for (const auto* name : { "libX11.so.6", "libXext.so.6", "libXcursor.so.1", "libXinerama.so.1",
                              "libXrender.so.1", "libXrandr.so.2", "libfontconfig.so.1" })
        dlopen (name, RTLD_NOW | RTLD_NODELETE);
}
