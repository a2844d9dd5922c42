#pragma once

/** The parameters' IDs. A section's parameter is one of the prefixes joined to the section's id, as in
    "threshold_low_band". All of them are stored in projects and presets and never change. */
namespace ParameterIds
{
inline constexpr auto enable = "enable";
inline constexpr auto crossoverLow = "crossover_low";
inline constexpr auto crossoverHigh = "crossover_high";
inline constexpr auto soloBand = "solo_band";
inline constexpr auto layout = "layout";
inline constexpr auto inGain = "in_gain";
inline constexpr auto oversampling = "oversampling";

inline constexpr auto thresholdPrefix = "threshold_";
inline constexpr auto shapePrefix = "shape_";
inline constexpr auto modePrefix = "mode_";
inline constexpr auto gainPrefix = "gain_";
inline constexpr auto enablePrefix = "enable_";
inline constexpr auto mutePrefix = "mute_";
inline constexpr auto linkPrefix = "link_";
} // namespace ParameterIds
