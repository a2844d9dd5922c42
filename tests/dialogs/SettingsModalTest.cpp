#include "dialogs/SettingsModal.h"

#include "settings/Settings.h"
#include "support/ReadOnly.h"
#include "support/TemporaryConfig.h"

#include <gtest/gtest.h>

namespace
{
struct LogProbe : public juce::Logger
{
    LogProbe() { setCurrentLogger (this); }

    ~LogProbe() override { setCurrentLogger (nullptr); }

    void logMessage (const juce::String& message) override { lines << message << "|"; }

    juce::String lines;
};

/** The settings and the dialog of one instance. */
struct Instance
{
    tessarin::SettingsFile settings;
    tessarin::ToastManager toasts;
    tessarin::SettingsModal modal { settings, toasts };
};

struct SettingsModal : testing::Test
{
    TemporaryConfig config;
    const juce::File file = config.file ("settings.settings");
};
} // namespace

TEST_F (SettingsModal, OffersSixScalesAndShowsNoOther)
{
    Instance instance;
    EXPECT_EQ (instance.modal.scaleBox.getText(), "Normal") << "nothing saved";
    EXPECT_EQ (instance.modal.scaleBox.getTitle(), "GUI Scale") << "for screen readers";

    for (const auto& [text, factor] : { std::pair { "Tiny", 0.5 },
                                        { "Small", 0.75 },
                                        { "Normal", 1.0 },
                                        { "Big", 1.25 },
                                        { "Bigger", 1.5 },
                                        { "Massive", 2.0 } })
    {
        instance.modal.scaleBox.setText (text, juce::sendNotificationSync);
        EXPECT_EQ (Instance().settings.getDoubleValue ("scale"), factor) << "saved at once";
        EXPECT_EQ (Instance().modal.scaleBox.getText(), text);
    }

    for (const auto& [value, shown] :
         { std::pair { "1.3", "" }, { "0.7501", "" }, { "0.75000000001", "Small" } })
    {
        instance.settings.setValue ("scale", value);
        instance.settings.saveIfNeeded();
        EXPECT_EQ (Instance().modal.scaleBox.getText(), shown) << value;
    }
}

TEST_F (SettingsModal, LogsWhyItCannotSave)
{
    const auto expectLog = [] (const juce::String& expected)
    {
        Instance instance;
        LogProbe log;
        instance.modal.scaleBox.setSelectedId (1, juce::sendNotificationSync);
        EXPECT_EQ (log.lines, "Unable to save the custom settings...|   ...Settings file " + expected + "|");
        EXPECT_EQ (instance.settings.getDoubleValue ("scale"), 0.5) << "in force";
    };

    file.createDirectory();
    expectLog ("has write access|   ...Parent folder has write access");
    file.deleteFile();
    file.create();

    {
        const ReadOnly readOnly { file.getParentDirectory(), file };
        expectLog ("has no write access|   ...Parent folder has no write access");
    }

    config.base.deleteRecursively();
    config.base.createDirectory();

    {
        const ReadOnly readOnly { config.base };
        expectLog ("doesn't exist|   ...Parent folder doesn't exist, and cannot be created as we have no "
                   "write access");
    }

    config.base.getChildFile ("Tessarin").create();
    expectLog ("doesn't exist");
}
