#pragma once

/** The four text sizes of the editor, in pixels at scale 1. */
namespace luna::FontHeights
{
inline constexpr float graph = 11.0f;
inline constexpr float control = 14.0f;
inline constexpr float topBar = 16.0f;
inline constexpr float title = 19.0f;
} // namespace luna::FontHeights
