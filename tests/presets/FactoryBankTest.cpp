#include "BankWriter.h"
#include "core/PluginUnderTest.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace
{
using namespace factoryBank;

std::vector<const Entry*> listAll()
{
    std::vector<const Entry*> all;

    for (const auto& folder : getFolders())
        for (const auto& entry : folder.presets)
            all.push_back (&entry);

    return all;
}

TEST (FactoryBank, ListsLoadsAndSavesEveryPresetByteForByte)
{
    const TemporaryConfig config;
    ASSERT_TRUE (juce::File (ORVO_PRESETS).copyDirectoryTo (config.preset ("Factory")));
    PluginUnderTest plugin;
    auto& manager = plugin.processor.presetManager;
    std::map<std::string, tessarin::Preset> listed;

    for (const auto& preset : manager.getPresets())
        listed[preset.name.toStdString()] = preset;

    EXPECT_EQ (listed.size(), listAll().size() + 1);

    for (const auto* entry : listAll())
    {
        SCOPED_TRACE (entry->name);
        const auto& [name, index, factory, author, categories, path, description] = listed[entry->name];
        ASSERT_TRUE (manager.loadPreset (index));

        for (const auto& [id, value] : entry->settings)
            EXPECT_NEAR (plugin.get (id), value, 1e-5 * std::max (1.0, std::abs (value))) << id;

        // The texts as the save dialog fills them in.
        EXPECT_TRUE (manager.makePresetText (description, categories.joinIntoString (","), author)
                     == juce::File (path).loadFileAsString());
    }
}

TEST (FactoryBank, HasPresetsThatCanBeSavedAgainAndFiltered)
{
    const juce::String letters ("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    std::set<std::string> names;
    std::map<juce::String, size_t> uses;

    for (const auto* entry : listAll())
    {
        SCOPED_TRACE (entry->name);
        EXPECT_TRUE (names.insert (entry->name).second && entry->name.size() <= 40);
        EXPECT_TRUE (juce::String (entry->name).containsOnly (letters + " 0123456789()_"));
        EXPECT_EQ (entry->description.find ('.'), entry->description.size() - 1);
        const auto categories = juce::StringArray::fromTokens (juce::String (entry->categories), ",", {});
        EXPECT_GE (categories.size(), 2);

        for (const auto& word : categories)
        {
            EXPECT_TRUE (word.containsOnly (letters));
            ++uses[word];
        }
    }

    EXPECT_GE (names.size(), 40u);

    for (const auto& [word, count] : uses)
        EXPECT_TRUE (count >= 3 && count <= names.size() / 2) << word << " fits " << count;
}
} // namespace
