#pragma once

namespace luna
{

/** Identifiers of the theme's colours in the look and feel's table. Widgets, and records that are drawn
   later, name their colours by these. */
namespace ColourIds
{
inline constexpr int primaryColourId = 0x5000000;
inline constexpr int textColourId = 0x5000005;
} // namespace ColourIds

} // namespace luna
