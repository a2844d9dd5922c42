#include "FactoryFolder.h"

#include "presets/FolderLock.h"

#include <fcntl.h>
#include <stdio.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <system_error>

namespace tessarin::FactoryFolder
{

namespace
{
namespace fs = std::filesystem;

/** In the factory folder: the version, then a line for each of its files as it was copied, the fingerprint first. */
constexpr auto listName = ".orvo-bank";

[[noreturn]] void fail()
{
    throw std::system_error (errno, std::generic_category());
}

std::string read (const fs::path& file)
{
    std::ifstream stream (file, std::ios::binary);
    std::ostringstream text;

    if (! stream || ! (text << stream.rdbuf() || fs::is_empty (file)))
        fail();

    return text.str();
}

/** Fails if the disk fills up halfway. */
void write (const fs::path& file, const std::string& text)
{
    std::ofstream stream (file, std::ios::binary);
    stream << text;
    stream.close();

    if (! stream)
        fail();
}

/** Tells a file that was changed by hand: what the command "cksum" prints of it, for scripts. */
std::string fingerprintOf (const std::string& text)
{
    std::uint32_t sum = 0;
    const auto add = [&sum] (std::uint32_t byte)
    {
        constexpr std::uint32_t polynomial = 0x04c11db7;
        sum ^= byte << 24;

        for (auto bit = 0; bit < 8; ++bit)
            sum = (sum << 1) ^ ((sum >> 31) * polynomial);
    };

    for (const auto byte : text)
        add (static_cast<unsigned char> (byte));

    for (auto length = text.size(); length > 0; length >>= 8)
        add (length & 0xff);

    return std::to_string (~sum) + " " + std::to_string (text.size());
}

/** What the list in a factory folder tells; empty without one. */
struct List
{
    explicit List (const fs::path& folder)
    {
        std::ifstream stream (folder / listName);
        std::getline (stream, version);

        for (std::string sum, size, path; stream >> sum >> size && std::getline (stream.ignore(), path);)
            fingerprints[path] = sum.append (" ").append (size);
    }

    std::string version;
    std::map<std::string, std::string> fingerprints;
};

/** Whether a version, as "1.0.1", is older than another. None is the oldest. */
bool isOlder (const juce::String& version, const juce::String& other)
{
    const auto a = juce::StringArray::fromTokens (version, ".", {});
    const auto b = juce::StringArray::fromTokens (other, ".", {});

    for (auto i = 0; i < juce::jmax (a.size(), b.size()); ++i)
        if (const auto difference = a[i].getIntValue() - b[i].getIntValue(); difference != 0)
            return difference < 0;

    return false;
}

bool isWanted (const fs::path& folder, const juce::String& version)
{
    std::error_code ignored;
    const auto status = fs::symlink_status (folder, ignored);

    if (status.type() != fs::file_type::directory)
        return status.type() == fs::file_type::not_found;

    std::ifstream list (folder / listName);
    std::string present;
    std::getline (list, present);
    return isOlder (present, version);
}

/** Copies the bank into a folder that does not exist, the list last. */
void copyBank (const fs::path& bank, const fs::path& target, const juce::String& version)
{
    fs::create_directory (target);
    auto list = version.toStdString() + "\n";

    for (const auto& entry : fs::recursive_directory_iterator (bank))
    {
        const auto path = entry.path().lexically_relative (bank);

        if (entry.is_directory())
        {
            fs::create_directory (target / path);
            continue;
        }

        const auto text = read (entry.path());
        write (target / path, text);
        list += fingerprintOf (text) + " " + path.string() + "\n";
    }

    write (target / listName, list);
}

bool haveSameContent (const fs::path& a, const fs::path& b)
{
    const auto type = fs::symlink_status (a).type();

    if (fs::symlink_status (b).type() != type)
        return false;

    if (type == fs::file_type::symlink)
        return fs::read_symlink (a) == fs::read_symlink (b);

    return fs::equivalent (a, b)
           || (type == fs::file_type::regular && fs::file_size (a) == fs::file_size (b)
               && read (a) == read (b));
}

/** Gives the user's file its name in the folder too, or that name with "(kept)" if the folder has another such file. */
void adopt (const fs::path& file, const fs::path& name)
{
    fs::create_directories (name.parent_path());
    auto target = name;

    for (auto number = 1;; ++number)
    {
        std::error_code failure;
        fs::create_hard_link (file, target, failure);

        // Some file systems have no links.
        if (failure && failure != std::errc::file_exists)
            fs::copy (file, target, fs::copy_options::copy_symlinks, failure);

        if (! failure || haveSameContent (file, target))
            return;

        if (failure != std::errc::file_exists)
            throw fs::filesystem_error ("adopt", file, target, failure);

        const auto kept = number == 1 ? std::string (" (kept)") : " (kept " + std::to_string (number) + ")";
        target = name.parent_path() / (name.stem().string() + kept + name.extension().string());
    }
}

/** Whatever in `folder` is the user's comes into `target` too. */
void adoptAll (const fs::path& folder, const fs::path& target)
{
    const List list (folder);

    for (const auto& entry : fs::recursive_directory_iterator (folder))
    {
        const auto path = entry.path().lexically_relative (folder);

        if (fs::is_directory (entry.symlink_status()) || path == listName)
            continue;

        const auto listed = list.fingerprints.find (path.string());
        const auto isOurs = listed != list.fingerprints.end() && entry.is_regular_file()
                            && ! entry.is_symlink() && fingerprintOf (read (entry.path())) == listed->second;

        if (! isOurs)
            adopt (entry.path(), target / path);
    }
}

/** Puts `fresh` in the place of `folder`, which goes to `old`; `old` does not exist if there is a folder. */
void replace (const fs::path& folder, const fs::path& fresh, const fs::path& old)
{
    if (! fs::exists (folder))
    {
        fs::rename (fresh, folder);
        return;
    }

    fs::rename (fresh, old);

    if (renameat2 (AT_FDCWD, old.c_str(), AT_FDCWD, folder.c_str(), RENAME_EXCHANGE) == 0)
        return;

    // On file systems that cannot exchange two names there is no folder for a moment.
    fs::rename (old, fresh);
    fs::rename (folder, old);
    std::error_code failure;
    fs::rename (fresh, folder, failure);

    if (failure)
    {
        fs::rename (old, folder);
        throw fs::filesystem_error ("replace", folder, failure);
    }
}

/** All that is needed, also behind a process that was ended in here. With the lock. */
void bringUpToDate (const fs::path& folder, const fs::path& bank, const juce::String& version,
                    const fs::path& work)
{
    // Whatever is left of the one is nobody's; the other is whole.
    const auto fresh = work / "new", old = work / "old";
    fs::remove_all (fresh);

    const auto clearOld = [&]
    {
        if (fs::exists (old) && fs::exists (folder))
        {
            adoptAll (old, folder);

            // Half of it would be taken for the user's.
            fs::rename (old, fresh);
            fs::remove_all (fresh);
        }
    };

    clearOld();

    if (! isWanted (folder, version))
        return;

    try
    {
        copyBank (bank, fresh, version);

        if (const auto& present = fs::exists (folder) ? folder : old; fs::exists (present))
            adoptAll (present, fresh);

        replace (folder, fresh, old);
    }
    catch (...)
    {
        fs::remove_all (fresh);
        throw;
    }

    // Also what was saved there just now.
    clearOld();
}
} // namespace

void update (const juce::File& folderFile, const juce::File& bankFile, const juce::String& version)
{
    const auto toPath = [] (const juce::File& file)
    { return fs::path (file.getFullPathName().toStdString()); };
    const auto folder = toPath (folderFile), bank = toPath (bankFile);
    const auto work = toPath (folderFile.getSiblingFile ("." + folderFile.getFileName() + "-update"));

    try
    {
        if (bank.empty() || (! isWanted (folder, version) && ! fs::exists (work))
            || ! fs::is_directory (bank))
            return;

        // Whoever waits has nothing left to do once another process is done.
        const FolderLock lock (work, [&] { return isWanted (folder, version); });

        if (lock.isHeld())
            bringUpToDate (folder, bank, version, work);
    }
    catch (const std::exception&)
    {
        // The folder is as it was.
    }
}

} // namespace tessarin::FactoryFolder
