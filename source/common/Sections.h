#pragma once

#include "common/NameTable.h"

/** The values of the parameter "layout": how the sections lie in the signal. */
namespace Layout
{
enum Value
{
    singleBand = 0,
    multiBand = 1,
    midSide = 2,
    leftRight = 3
};

inline constexpr std::array names { "Single Band", "Multi Band", "Mid / Side", "Left / Right" };
} // namespace Layout

/** The values of the parameter "solo_band". */
namespace Solo
{
inline constexpr auto none = 3;
inline constexpr std::array names { "Low", "Mid", "High", "None" };
} // namespace Solo

/** The values of the parameter "oversampling": powers of two. */
namespace Oversampling
{
inline constexpr std::array names { "Off", "2x", "4x", "8x", "16x" };
inline constexpr auto largestExponent = static_cast<int> (names.size()) - 1;
} // namespace Oversampling

inline constexpr size_t numBands = 3;

/** Rows of the section table, in the order in which the host sees their parameters. The bands come first. */
namespace SectionRow
{
enum Value : size_t
{
    lowBand,
    midBand,
    highBand,
    midChannel,
    sideChannel,
    leftChannel,
    rightChannel,
    single,
    post
};
} // namespace SectionRow

inline constexpr size_t numSections = 9;

/** One of the nine clipper sections. */
struct SectionInfo
{
    /** The end of its parameters' IDs: stored in every project and preset, and never changed. */
    const char* id;

    /** The beginning of its parameters' names. */
    const char* name;

    /** Over its panel. */
    const char* title;

    /** Of the theme's primary colour for its panel, in turns. */
    float hueRotation;

    /** The layout that it sounds in, or every one. */
    int layout;

    static constexpr auto everyLayout = -1;

    /** Of its parameter with this prefix. */
    [[nodiscard]] juce::String idOf (const char* prefix) const { return juce::String (prefix) + id; }

    [[nodiscard]] juce::String nameOf (const char* what) const { return juce::String (name) + " " + what; }

    [[nodiscard]] constexpr bool isIn (int shownLayout) const noexcept
    {
        return layout == everyLayout || layout == shownLayout;
    }
};

/** By `SectionRow`; those of a layout stand in the order of their panels. */
inline constexpr std::array<SectionInfo, numSections> sectionTable { {
    { "low_band", "Low Band", "Low", 0.0f, Layout::multiBand },
    { "mid_band", "Mid Band", "Mid", -0.25f, Layout::multiBand },
    { "high_band", "High Band", "High", -0.5f, Layout::multiBand },
    { "mid_channel", "Mid Channel", "Mid", 0.0f, Layout::midSide },
    { "high_channel", "Side Channel", "Side", -0.25f, Layout::midSide },
    { "left_channel", "Left Channel", "Left", 0.0f, Layout::leftRight },
    { "right_channel", "Right Channel", "Right", -0.25f, Layout::leftRight },
    { "single", "Clipper", "Clipper", 0.0f, Layout::singleBand },
    { "post", "Post", "Post", -0.75f, SectionInfo::everyLayout },
} };
