#pragma once

/** Rows that draw a widget. They have one reading, the milliseconds of a frame. */
namespace bench
{
inline constexpr auto msPerFrame = "ms_per_frame";

void addGraphRows();
} // namespace bench
