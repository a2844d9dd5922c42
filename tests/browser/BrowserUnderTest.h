#pragma once

#include "browser/PresetBrowser.h"
#include "core/OrvoAudioProcessor.h"
#include "look/TessarinLookAndFeel.h"
#include "OffscreenWindow.h"
#include "support/Messages.h"
#include "support/TemporaryConfig.h"
#include "widgets/Pixels.h"

#include <gtest/gtest.h>

#include <set>

/** The browser over five presets and the initial patch, in a window that takes real mouse and key events. */
class Browser : public testing::Test
{
protected:
    using String = juce::String;
    using Words = std::set<std::string>;

    struct Frame : juce::Component
    {
        Frame() { setSize (977, 732); }
    };

    Browser()
    {
        content.addChildComponent (browser);
        browser.setBounds (content.getLocalBounds());
        browser.setVisible (true);
    }

    static std::unique_ptr<OrvoAudioProcessor> start (const TemporaryConfig& config)
    {
        const auto add = [&config] (const char* path, const char* categories)
        { config.addPreset (path, stateText ({}, String ("categories=\"") + categories + "\"")); };

        config.addPreset ("Factory/Bass/Sub/_description.txt", "For the low end");
        add ("Factory/Deep.tpre", "B,A");
        add ("Factory/Bass/Sub/Low.tpre", "B");
        add ("User/One.tpre", "A, ,C,");
        add ("User/Two.tpre", "");
        add ("User/Zed.tpre", R"(C,B,A" author="Ann" description="Last)");
        return std::make_unique<OrvoAudioProcessor>();
    }

    /** The rows' names, each with the preset that the list has for the row's index. */
    Words rows() const
    {
        Words names;

        for (const auto& preset : browser.table.shownPresets)
        {
            EXPECT_EQ (preset.name, manager.getPresets()[preset.index].name);
            names.insert (preset.name.toStdString());
        }

        EXPECT_EQ (static_cast<int> (names.size()), browser.table.shownPresets.size());
        return names;
    }

    std::string current() const { return manager.getCurrentPreset().name.toStdString(); }

    std::string selected() const
    {
        const auto row = browser.table.table.getSelectedRow();
        return row < 0 ? "" : browser.table.shownPresets[row].name.toStdString();
    }

    void clickRow (int row, int button = juce::ModifierKeys::leftButtonModifier)
    {
        auto& table = browser.table.table;
        window.clickMouse (table, { 50, table.getHeaderHeight() + 22 * row + 11 }, button);
    }

    /** Whether a right click there opens a menu, which is closed again. */
    bool opensMenu (int row)
    {
        clickRow (row, juce::ModifierKeys::rightButtonModifier);
        const auto isOpen = juce::ModalComponentManager::getInstance()->getNumModalComponents() > 0;
        juce::PopupMenu::dismissAllActiveMenus();
        dispatchMessages();
        return isOpen;
    }

    /** Once the tree has laid out its rows, which it does in a message of its own. */
    void clickFolder (int row)
    {
        dispatchMessages();
        window.clickMouse (browser.tree.treeView, { 60, 22 * row + 11 });
    }

    void clickBadge (const String& text, int button = juce::ModifierKeys::leftButtonModifier)
    {
        for (auto* badge : browser.categories.badges)
            if (badge->text == text)
                window.clickMouse (*badge, { 8, 10 }, button);
    }

    void press (int key)
    {
        browser.table.grabKeyboardFocus();
        window.typeKey (juce::KeyPress (key));
    }

    /** Each key selects and loads the preset of that name. */
    void expectSteps (const std::vector<std::pair<int, std::string>>& steps)
    {
        for (const auto& [key, name] : steps)
        {
            press (key);
            EXPECT_EQ (selected(), name);
            EXPECT_EQ (current(), name);
        }
    }

    void showAgain()
    {
        browser.setVisible (false);
        browser.setVisible (true);
    }

    TemporaryConfig config;
    tessarin::DLAF shared;
    std::unique_ptr<OrvoAudioProcessor> processor = start (config);
    tessarin::PresetManager& manager = processor->presetManager;
    Frame content;
    tessarin::PresetBrowser browser { manager };
    OffscreenWindow window { content };
};
