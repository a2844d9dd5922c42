#include "common/ColourIds.h"
#include "dialogs/SavePresetModal.h"
#include "editor/OpenEditor.h"
#include "look/TessarinLookAndFeel.h"
#include "look/ThemeResolver.h"
#include "widgets/Contrast.h"

#include <gtest/gtest.h>

#include <map>

using namespace luna::ColourIds;
using juce::Colour;
using juce::Rectangle;

namespace
{
/** The pixel of an area that is the clearest on a ground. */
Colour clearestIn (const juce::Image& image, Rectangle<int> area, Colour ground)
{
    auto clearest = ground;

    for (auto y = area.getY(); y < area.getBottom(); ++y)
        for (auto x = area.getX(); x < area.getRight(); ++x)
            clearest = luna::Contrast::clearer (clearest, image.getPixelAt (x, y), ground);

    return clearest;
}

/** Measures what is drawn in one theme. */
struct Theme
{
    explicit Theme (const juce::String& name)
    {
        open.plugin.processor.settings.setValue ("theme", name);
        dispatchMessages();
    }

    Colour colour (int id) const { return look.findColour (id); }

    void add (const char* name, Colour mark, Colour ground)
    {
        ratios.emplace_back (name, luna::Contrast::ratio (mark, ground));
    }

    void measureMenus()
    {
        juce::Image image (juce::Image::RGB, 200, 66, true, juce::SoftwareImageType());
        juce::Graphics g (image);
        look.drawPopupMenuBackgroundWithOptions (g, 200, 66, {});

        for (const auto row : { 0, 1, 2 })
            look.drawPopupMenuItem (g, { 1, 22 * row, 198, 22 }, false, true, row == 1, row < 2, row == 2,
                                    "Soft I", {}, nullptr, nullptr);

        const auto ground = image.getPixelAt (150, 5), fill = image.getPixelAt (150, 27);
        const Rectangle<int> tick (8, 4, 16, 14);
        add ("edge of a menu, inside", image.getPixelAt (0, 30), ground);
        add ("edge of a menu, on a panel", image.getPixelAt (0, 30), colour (panelColourId));
        add ("frame of the choice under the mouse", image.getPixelAt (100, 22), ground);
        add ("tick", clearestIn (image, tick, ground), ground);
        add ("tick under the mouse", clearestIn (image, tick.translated (0, 22), fill), fill);
        look.drawPopupMenuSectionHeader (g, { 1, 0, 198, 22 }, "Clippers");
        EXPECT_NE (image.getPixelAt (150, 5), ground) << "no choice";
        add ("arrow of a submenu", clearestIn (image, { 175, 46, 20, 18 }, ground), ground);
    }

    void measureDialog()
    {
        auto& dialog = open.editor->savePresetModal;
        open.window->clickMouse (open.editor->topBar.saveButton, { 5, 5 });
        const auto field = open.pictureOf (dialog.nameField), button = open.pictureOf (dialog.saveButton);
        add ("ring of a text field, inside", field.getPixelAt (100, 1), field.getPixelAt (300, 4));
        add ("focus ring, on a panel", field.getPixelAt (100, 1), colour (panelColourId));
        add ("edge of the default button", button.getPixelAt (50, 0), colour (panelColourId));
        dialog.setVisible (false);
    }

    void measureBypassed()
    {
        open.set ("enable", 0.0);
        auto& buttons = open.editor->inputPanel.layoutButtons.buttons;
        const auto on = open.pictureOf (*buttons[0]);
        const auto ground = open.pictureOf (*buttons[1]).getPixelAt (5, 3);
        add ("bar of a disabled button that is on", clearestIn (on, { 2, 6, 6, 8 }, ground), ground);
        open.set ("enable", 1.0);
    }

    void measureToasts()
    {
        auto& manager = open.plugin.processor.toastManager;

        for (const auto& [name, type] : { std::pair { "ring of an error's DISMISS", tessarin::toastError },
                                          { "ring of a success's DISMISS", tessarin::toastSuccess },
                                          { "ring of a notice's DISMISS", tessarin::toastNotice } })
        {
            manager.showToast ("Text", type, true);
            manager.toasts[0]->grabKeyboardFocus();
            const auto picture = open.pictureOf (*manager.toasts[0]);
            add (name, picture.getPixelAt (picture.getWidth() - 40, 10), picture.getPixelAt (500, 25));
            manager.toasts.clear();
        }

        manager.setVisible (false);
    }

    void measureReadouts()
    {
        auto& output = open.editor->outputPanel;
        open.plugin.processor.inputMaxPeakDb = 0.5f;
        open.plugin.processor.levels.input.left.maxPeak = 1.06;
        auto& value = output.meters.inputMeters.leftPeakValue;
        EXPECT_TRUE (eventually ([&] { return value.getText() == "0.5"; }));
        const auto picture = open.pictureOf (output.peakInLabel);
        add ("frame of a peak above 0 dB", picture.getPixelAt (45, 16), picture.getPixelAt (45, 40));
        add ("number above 0 dB over a meter", value.findColour (juce::Label::textColourId),
             colour (backgroundColourId));
    }

    OpenEditor open;
    tessarin::TessarinLookAndFeel& look = open.editor->lookAndFeel->lookAndFeel;
    std::vector<std::pair<std::string, double>> ratios;
};
} // namespace

/** The guide to the appearance has the numbers, so that nobody has to compute them. */
TEST (Marks, AreSeenInEveryThemeAsDocumented)
{
    std::map<std::string, juce::String> rows;

    for (const auto& name : tessarin::ThemeResolver::getEmbeddedThemeNames())
    {
        Theme theme (name);
        theme.measureMenus();
        theme.measureDialog();
        theme.measureBypassed();
        theme.measureToasts();
        theme.measureReadouts();

        for (const auto& [mark, ratio] : theme.ratios)
        {
            EXPECT_GE (ratio, 3.0) << mark << " in " << name;

            if (rows[mark].isEmpty())
                rows[mark] << "| " << juce::String (mark);

            rows[mark] << " | " << juce::String (ratio, 1);
        }
    }

    const auto guide = juce::StringArray::fromLines (juce::File (ORVO_APPEARANCE).loadFileAsString());

    for (const auto& [mark, row] : rows)
        EXPECT_TRUE (guide.contains (row + " |")) << row << " |";
}
