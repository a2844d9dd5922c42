#pragma once

namespace tessarin
{

/** What JUCE gets in the place of a function that it looks up by name: one of ours for some functions of the X library,
    else the one that was found. Any thread. */
[[nodiscard]] void* inPlaceOf (const char* name, void* found);

} // namespace tessarin
