#pragma once

#include <string>
#include <vector>

/** The factory presets as a table: what a preset changes from the default patch, and how it presents itself.
    `orvo-bank` writes the files from it. */
namespace factoryBank
{
inline constexpr auto author = "Tessarin";

/** A parameter and its real value, not the normalised one. */
struct Setting
{
    std::string id;
    double value = 0.0;
};

using Settings = std::vector<Setting>;

struct Entry
{
    /** Letters, digits, blanks, parentheses and underscores, as in the save dialog; also the file's name. */
    std::string name;

    /** Words of letters, sorted, with commas between them and no blanks. */
    std::string categories;

    /** One sentence. */
    std::string description;

    Settings settings;

    /** IDs of the sections that the preset puts to work. */
    std::vector<std::string> sections;
};

struct Folder
{
    std::string name;
    std::string description;
    std::vector<Entry> presets;
};

[[nodiscard]] const std::vector<Folder>& getFolders();

} // namespace factoryBank
