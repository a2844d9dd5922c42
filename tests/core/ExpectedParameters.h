#pragma once

#include <map>
#include <string>
#include <vector>

/** The plug-in's parameters as hosts and projects know them, written down apart from the code. */
namespace expected
{
struct Parameter
{
    std::string id, name;
    double min, max, defaultValue;

    /** At the default and at both ends. */
    std::string text, least, most;
};

struct Section
{
    std::string id, name;
};

inline const std::vector<Section> sections {
    { "low_band", "Low Band" },
    { "mid_band", "Mid Band" },
    { "high_band", "High Band" },
    { "mid_channel", "Mid Channel" },
    { "high_channel", "Side Channel" },
    { "left_channel", "Left Channel" },
    { "right_channel", "Right Channel" },
    { "single", "Clipper" },
    { "post", "Post" },
};

inline std::vector<Parameter> parameters()
{
    std::vector<Parameter> all { { "enable", "Enabled", 0, 1, 1, "Enabled", "Bypassed", "Enabled" } };

    for (const auto& [id, name] : sections)
    {
        all.push_back ({ "threshold_" + id, name + " Threshold", -18, 0, 0, "0.0dB", "-18.0dB", "0.0dB" });
        all.push_back ({ "shape_" + id, name + " Shape", 0, 1, 0, "0%", "0%", "100%" });
        all.push_back ({ "mode_" + id, name + " Type", 0, 4, 1, "Soft I", "Hard", "Boost" });
        all.push_back ({ "gain_" + id, name + " Gain", -18, 18, 0, "0.0dB", "-18.0dB", "18.0dB" });
        all.push_back ({ "enable_" + id, name + " Enable", 0, 1, 1, "On", "Off", "On" });
        all.push_back ({ "mute_" + id, name + " Mute", 0, 1, 0, "Unmuted", "Unmuted", "Muted" });
        all.push_back ({ "link_" + id, name + " Link", 0, 1, 0, "Unlinked", "Unlinked", "Linked" });
    }

    all.push_back ({ "crossover_low", "XOver Low", 60, 1000, 160, "160.0Hz", "60.0Hz", "1000.0Hz" });
    all.push_back (
        { "crossover_high", "XOver High", 2000, 10000, 3500, "3500.0Hz", "2000.0Hz", "10000.0Hz" });
    all.push_back ({ "solo_band", "Solo Band", 0, 3, 3, "None", "Low", "None" });
    all.push_back ({ "layout", "Layout", 0, 3, 0, "Single Band", "Single Band", "Left / Right" });
    all.push_back ({ "in_gain", "Input Gain", -18, 18, 0, "0.0dB", "-18.0dB", "18.0dB" });
    all.push_back ({ "oversampling", "Oversampling", 0, 4, 0, "Off", "Off", "16x" });
    return all;
}

/** Real values by ID. */
using Values = std::map<std::string, double>;

inline Values defaults()
{
    Values values;

    for (const auto& parameter : parameters())
        values[parameter.id] = parameter.defaultValue;

    return values;
}

inline Values with (Values values, const Values& changes)
{
    for (const auto& [id, value] : changes)
        values.at (id) = value;

    return values;
}
} // namespace expected
