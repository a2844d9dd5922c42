#pragma once

/** A function of one of X's libraries, which are loaded when they are first asked for, so that the commands without a
    window run without them. Throws if it cannot be had. */
[[nodiscard]] void* findInLibrary (const char* library, const char* name);

template <typename Function>
[[nodiscard]] Function* findX11 (const char* name)
{
    return reinterpret_cast<Function*> (findInLibrary ("libX11.so.6", name));
}
