#include "BankWriter.h"
#include "core/PluginUnderTest.h"
#include "presets/RecordedMusic.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace
{
using namespace factoryBank;
using signals::toDb;
using signals::toGain;

const juce::File trackedBank (ORVO_PRESETS);

struct Listed
{
    const Folder* folder;
    const Entry* entry;
};

void PrintTo (const Listed& listed, std::ostream* stream)
{
    *stream << listed.entry->name;
}

std::vector<Listed> listAll()
{
    std::vector<Listed> all;

    for (const auto& folder : getFolders())
        for (const auto& entry : folder.presets)
            all.push_back ({ &folder, &entry });

    return all;
}

juce::StringArray categoriesOf (const Entry& entry)
{
    return juce::StringArray::fromTokens (juce::String (entry.categories), ",", {});
}

TEST (FactoryBank, ListsLoadsAndSavesEveryPresetByteForByte)
{
    const TemporaryConfig config;
    ASSERT_TRUE (trackedBank.copyDirectoryTo (config.preset ("Factory")));
    PluginUnderTest plugin;
    auto& manager = plugin.processor.presetManager;
    std::map<std::string, tessarin::Preset> listed;

    for (const auto& preset : manager.getPresets())
        listed[preset.name.toStdString()] = preset;

    EXPECT_EQ (listed.size(), listAll().size() + 1);

    for (const auto& [folder, entry] : listAll())
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

TEST (FactoryBank, CoversTheProductWithPresetsThatCanBeFiltered)
{
    const juce::String letters ("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    std::set<std::string> names, sections;
    std::map<std::string, std::set<double>> used;
    std::map<juce::String, size_t> uses;

    for (const auto& [folder, entry] : listAll())
    {
        SCOPED_TRACE (entry->name);
        EXPECT_TRUE (names.insert (entry->name).second && entry->name.size() <= 40);
        EXPECT_TRUE (juce::String (entry->name).containsOnly (letters + " 0123456789()_"));
        EXPECT_EQ (entry->description.find ('.'), entry->description.size() - 1);
        EXPECT_GE (categoriesOf (*entry).size(), 2);

        for (const auto& word : categoriesOf (*entry))
        {
            EXPECT_TRUE (word.containsOnly (letters));
            ++uses[word];
        }

        for (const auto& [id, value] : entry->settings)
            used[id.starts_with ("mode_") ? "mode" : id.starts_with ("link_") ? "link" : id].insert (value);

        sections.insert (entry->sections.begin(), entry->sections.end());
    }

    EXPECT_GE (names.size(), 40u);
    EXPECT_EQ (sections.size(), static_cast<size_t> (numSections));
    EXPECT_EQ (used["mode"].size(), 5u);
    EXPECT_EQ (used["layout"], (std::set { 1.0, 2.0, 3.0 }));
    EXPECT_EQ (used["oversampling"].size(), 4u);
    EXPECT_TRUE (used.contains ("link") && ! used.contains ("solo_band"));
    EXPECT_GE (used["crossover_low"].size(), 3u);

    for (const auto& [word, count] : uses)
        EXPECT_TRUE (count >= 3 && count <= names.size() / 2) << word << " fits " << count;
}

/** What a section did: the peak of its input re the threshold, and the part of the samples that reached it.
    */
struct Work
{
    double peak = 0.0;
    double share = 0.0;
};

constexpr auto atThreshold = 0.9999;

std::map<juce::String, Work> play (PluginUnderTest& plugin, signals::Buffer& music)
{
    std::map<juce::String, Work> work;

    // In blocks of one sample a section's envelope, once reset, tells the level of that sample.
    const auto playSample = [&] (auto& sample)
    {
        for (const auto& section : plugin.processor.sections)
            section.clipper->current->envelope = 0.0f;

        plugin.process (sample);

        for (const auto& [name, id, clipper] : plugin.processor.sections)
        {
            auto& [peak, share] = work[id];
            const auto level =
                static_cast<double> (clipper->current->envelope) / toGain (plugin.get ("threshold_" + id));
            peak = std::max (peak, level);
            share += level > atThreshold ? 1.0 / music.getNumSamples() : 0.0;
        }
    };

    signals::inBlocks (music, { 1 }, playSample);
    return work;
}

class FactoryPreset : public testing::TestWithParam<Listed>
{
};

TEST_P (FactoryPreset, DoesToRealMusicWhatItClaims)
{
    const auto& [folder, entry] = GetParam();
    PluginUnderTest plugin (2, recordedMusic::sampleRate);
    ASSERT_TRUE (apply (*entry, plugin.processor));

    auto music = recordedMusic::make (folder->level);
    const auto before = recordedMusic::measure (music, toGain (plugin.get ("in_gain")));
    const auto work = play (plugin, music);
    const auto after = recordedMusic::measure (music);
    auto largestShare = 0.0;
    auto makesHoles = false;

    for (const auto& [id, done] : work)
    {
        const auto isClaimed =
            std::count (entry->sections.begin(), entry->sections.end(), id.toStdString()) > 0;
        EXPECT_TRUE (isClaimed ? done.peak > atThreshold : done.peak < 1.0001)
            << id << " " << toDb (done.peak) << " dB";

        // "Pressure" mutes what is beyond its limit.
        const auto isPressure = juce::roundToInt (plugin.get ("mode_" + id)) == 3;
        makesHoles = makesHoles || (isPressure && done.peak > 2.0 + 0.5 * plugin.get ("shape_" + id));
        largestShare = std::max (largestShare, done.share);
    }

    const auto isLinked = plugin.get ("link_post") > 0.5;
    EXPECT_LT (
        after.peakDb,
        1e-5 + (isLinked ? 0.0 : std::min (0.0, plugin.get ("threshold_post") + plugin.get ("gain_post"))));
    EXPECT_NEAR (after.rmsDb, before.rmsDb, 9.0);

    const auto categories = categoriesOf (*entry);
    EXPECT_EQ (makesHoles, categories.contains ("Glitch"));
    EXPECT_TRUE (! categories.contains ("Clean") || largestShare < 0.02) << largestShare;
    EXPECT_TRUE (! categories.contains ("Dirty") || largestShare > 0.01) << largestShare;
    EXPECT_TRUE (! categories.contains ("Loud") || after.getCrest() < before.getCrest() - 2.5)
        << after.getCrest();
}

std::string toTestName (const testing::TestParamInfo<Listed>& info)
{
    return juce::String (info.param.entry->name).removeCharacters (" ()_").toStdString();
}

INSTANTIATE_TEST_SUITE_P (All, FactoryPreset, testing::ValuesIn (listAll()), toTestName);
} // namespace
