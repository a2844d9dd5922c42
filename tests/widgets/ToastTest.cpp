#include "OffscreenWindow.h"
#include "settings/TessarinLogger.h"
#include "support/Messages.h"
#include "support/TemporaryConfig.h"
#include "widgets/ToastManager.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace
{
using namespace tessarin;

struct Toasts : testing::Test
{
    void adopt()
    {
        editor.addChildComponent (manager);
        manager.setBounds (editor.getLocalBounds());
    }

    void press (juce::Component& toast, int x)
    {
        OffscreenWindow (editor).clickMouse (toast, { x, 10 });
        dispatchMessages();
    }

    std::vector<int> tops() const
    {
        std::vector<int> all;

        for (const auto* toast : manager.toasts)
        {
            EXPECT_EQ (toast->getParentComponent(), &manager);
            EXPECT_TRUE (toast->isVisible());
            EXPECT_EQ (toast->getBounds().withY (0), juce::Rectangle<int> (10, 0, 580, 50));
            all.push_back (toast->getY());
        }

        return all;
    }

    TemporaryConfig config;
    TessarinLogger logger { config.file ("log.log") };
    juce::Component editor;
    ToastManager manager;

    Toasts() { editor.setBounds (0, 0, 600, 400); }
};

TEST_F (Toasts, AreStackedOverTheEditorAndMoveUp)
{
    adopt();
    EXPECT_FALSE (manager.isVisible());

    for (const auto* text : { "one", "two", "three" })
        manager.showToast (text, toastNotice, true);

    EXPECT_EQ (tops(), (std::vector<int> { 20, 80, 140 }));
    EXPECT_TRUE (manager.isVisible());

    press (*manager.toasts[0], 570);
    EXPECT_EQ (tops(), (std::vector<int> { 20, 80 }));
    EXPECT_EQ (manager.toasts[0]->text, "two");

    press (*manager.toasts[1], 570);
    press (*manager.toasts[0], 570);
    EXPECT_FALSE (manager.isVisible());
    EXPECT_EQ (manager.getNumChildComponents(), 0);
}

TEST_F (Toasts, LeaveOnlyByAPressAtTheirRightEnd)
{
    adopt();

    for (const auto& [fromRight, isDismissible, leaves] :
         { std::tuple { 70, true, false }, { 69, true, true }, { 1, true, true }, { 1, false, false } })
    {
        manager.toasts.clear();
        manager.showToast ("text", isDismissible ? toastError : toastFatal, isDismissible);
        press (*manager.toasts[0], 580 - fromRight);
        EXPECT_EQ (manager.toasts.isEmpty(), leaves) << fromRight;
        EXPECT_EQ (manager.isVisible(), ! leaves);
    }
}

TEST_F (Toasts, AreLoggedWithThePrefixThatTheyShow)
{
    logger.getTime = [] { return juce::Time (2026, 1, 1, 12, 0, 0, 0, true); };
    juce::String lines;

    for (const auto& [type, text] : { std::pair { toastError, "ERROR: a" },
                                      { toastSuccess, "a" },
                                      { toastNotice, "a" },
                                      { toastFatal, "ERROR: a" } })
    {
        manager.showToast ("a", type, true);
        EXPECT_EQ (manager.toasts.getLast()->text, text);
        lines << "01/02/2026 12:00:00 " << text << "\r\n";
    }

    EXPECT_EQ (config.log(), lines);
    manager.showError ("b");
    EXPECT_TRUE (manager.toasts[4]->dismissible && manager.toasts[4]->type == toastError);
}

TEST_F (Toasts, WaitForTheNextEditor)
{
    manager.showError ("before any editor");
    EXPECT_EQ (manager.getNumChildComponents(), 0);

    adopt();
    EXPECT_EQ (tops(), std::vector<int> { 20 });

    editor.removeChildComponent (&manager);
    manager.showError ("while closed");
    adopt();
    EXPECT_EQ (tops(), (std::vector<int> { 20, 80 })) << "an editor of the same size";
    EXPECT_TRUE (manager.isVisible());

    manager.setSize (800, 400);
    EXPECT_EQ (manager.toasts[1]->getBounds(), juce::Rectangle<int> (10, 80, 780, 50));
}
} // namespace
