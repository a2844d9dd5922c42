#include "presets/FactoryFolder.h"

#include "scratch/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <thread>
#include <vector>

namespace
{
namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

const Files bank { { "Bass/Low.tpre", "low" }, { "Bass/_description.txt", "deep" }, { "Top.tpre", "top" } };

struct FactoryFolder : testing::Test
{
    static void write (const fs::path& folder, const Files& files)
    {
        for (const auto& [path, text] : files)
        {
            fs::create_directories ((folder / path).parent_path());
            std::ofstream (folder / path) << text;
        }
    }

    static std::string textOf (const fs::path& file)
    {
        std::ifstream stream (file);
        return { std::istreambuf_iterator (stream), {} };
    }

    /** Whatever lies beside the factory's folder too, but the plug-in's list. */
    [[nodiscard]] Files present() const
    {
        Files files;

        for (const auto& entry : fs::recursive_directory_iterator (presets))
            if ((entry.is_symlink() || ! entry.is_directory()) && entry.path().filename() != ".orvo-bank")
                files[entry.path().lexically_relative (factory)] =
                    entry.is_symlink() ? "-> " + fs::read_symlink (entry.path()).string()
                                       : textOf (entry.path());

        return files;
    }

    void update (const Files& files, const char* version) const
    {
        const auto source = temporary.path / "bank" / version;
        write (source, files);
        tessarin::FactoryFolder::update (juce::File (factory.string()), juce::File (source.string()),
                                         version);
    }

    const TemporaryFolder temporary {};
    const fs::path presets = temporary.path / "Presets", factory = presets / "Factory";
};

TEST_F (FactoryFolder, IsReplacedByANewerVersionAloneAndKeepsWhatTheUserHasPutThere)
{
    update (bank, "1.9");
    EXPECT_EQ (present(), bank);

    // What the user does to it.
    fs::remove (factory / "Bass/_description.txt");
    write (factory, { { "Bass/Low.tpre", "mine" }, { "Own/Mine.tpre", "own" }, { ".hidden", "" } });
    fs::create_symlink ("../elsewhere", factory / "link");
    write (presets / "User", { { "Mine.tpre", "untouched" } });
    auto expected = present();

    const Files next { { "Bass/Low.tpre", "lower" }, { "New.tpre", "new" }, { "Own/Mine.tpre", "ours" } };

    for (const auto* version : { "1.9", "1.9.0", "1.8.7", "0.10", "1", "" })
    {
        update (next, version);
        EXPECT_EQ (present(), expected) << version;
    }

    expected.erase ("Top.tpre");
    expected.insert (
        { { "Bass/Low (kept).tpre", "mine" }, { "Own/Mine (kept).tpre", "own" }, { "New.tpre", "new" } });
    expected["Bass/Low.tpre"] = "lower";
    expected["Own/Mine.tpre"] = "ours";
    update (next, "1.10");
    EXPECT_EQ (present(), expected);

    // What was kept stays so, and what the user has changed again comes beside it.
    write (factory, { { "Bass/Low.tpre", "mine too" } });
    expected["Bass/Low (kept 2).tpre"] = "mine too";
    update (next, "2");
    EXPECT_EQ (present(), expected);
}

TEST_F (FactoryFolder, WithoutAListHoldsNothingButTheUsersOwnAndTheSamePresets)
{
    write (factory, { { "Top.tpre", "top" }, { "Bass/Low.tpre", "old" }, { "Bass/Gone.tpre", "gone" } });
    auto expected = bank;
    expected.insert ({ { "Bass/Low (kept).tpre", "old" }, { "Bass/Gone.tpre", "gone" } });
    update (bank, "1");
    EXPECT_EQ (present(), expected);
}

TEST_F (FactoryFolder, ThatIsALinkOrAFileIsTheUsersAffair)
{
    write (temporary.path / "elsewhere", { { "Mine.tpre", "mine" } });
    fs::create_directory (presets);
    fs::create_symlink (temporary.path / "elsewhere", factory);
    update (bank, "1");
    EXPECT_EQ (present(), (Files { { ".", "-> " + (temporary.path / "elsewhere").string() } }));
    EXPECT_EQ (std::distance (fs::directory_iterator (factory), {}), 1);

    fs::remove (factory);
    write (presets, { { "Factory", "a file" } });
    update (bank, "1");
    EXPECT_EQ (present(), (Files { { ".", "a file" } }));
}

TEST_F (FactoryFolder, ListsWhatTheCommandCksumPrints)
{
    update ({ { "A b.tpre", std::string (70000, 'x') + "\xff" }, { "Empty", "" } }, "1.0.1");
    const auto command = "cd '" + factory.string()
                         + "' && { echo 1.0.1; cksum *; } > ../expected && sort -o ../expected "
                           "../expected && sort .orvo-bank | cmp - ../expected";
    EXPECT_EQ (std::system (command.c_str()), 0);
}

TEST_F (FactoryFolder, IsCompleteForEachOfManyThreads)
{
    Files many;
    for (auto i = 0; i < 40; ++i)
        many["Folder/" + std::to_string (i)] = std::to_string (i);

    write (temporary.path / "bank/2", many);

    for (auto turn = 0; turn < 10; ++turn)
    {
        fs::remove_all (presets);
        if (turn % 2 != 0)
            update (bank, "1");

        std::vector<std::thread> threads;
        for (auto i = 0; i < 8; ++i)
            threads.emplace_back (
                [&]
                {
                    tessarin::FactoryFolder::update (juce::File (factory.string()),
                                                     juce::File ((temporary.path / "bank/2").string()), "2");
                    for (const auto& [path, text] : many)
                        EXPECT_EQ (textOf (factory / path), text);
                });
        for (auto& thread : threads)
            thread.join();

        EXPECT_EQ (present(), many);
    }
}
} // namespace
