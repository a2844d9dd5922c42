#pragma once

namespace luna
{

/** Identifiers of the theme's colours in the look and feel's table. Widgets, and records that are drawn
   later, name their colours by these. */
namespace ColourIds
{
inline constexpr int primaryColourId = 0x5000000;
inline constexpr int textColourId = 0x5000005;

inline constexpr int toastErrorColourId = 0x2000020;
inline constexpr int toastSuccessColourId = 0x2000021;
inline constexpr int toastNoticeColourId = 0x2000022;
inline constexpr int toastTextColourId = 0x2000023;
} // namespace ColourIds

} // namespace luna
