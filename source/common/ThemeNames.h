#pragma once

#include "common/NameTable.h"

/** The embedded themes, in the order in which they are cycled; resources/themes holds a document for each. The first
    is the default. */
inline constexpr std::array embeddedThemeNames { "Default", "Ice", "Night", "TwentyTwenty" };
