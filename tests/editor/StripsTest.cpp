#include "common/ColourIds.h"
#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

TEST (OutputPanel, ShowsEachValueInItsOwnPlace)
{
    using namespace luna::ColourIds;
    OpenEditor open;
    auto& panel = open.editor->outputPanel;
    auto& p = open.plugin.processor;
    auto& [in, out] = p.levels;
    LevelChannel* const channels[] { &in.left, &in.right, &out.left, &out.right };

    // No two maxima alike, with RMS half the peak.
    for (auto i = 0; i < 4; ++i)
    {
        channels[i]->maxPeak = std::pow (10.0, -(i + 1) * 0.3);
        channels[i]->maxRmsSum =
            static_cast<float> (std::pow (0.5 * channels[i]->maxPeak, 2.0) * in.left.rmsSamples);
    }

    // Where the row of RMS has the right channel's peak once more: -6 dB for each 0.3; half and a sine's crest, -3.0.
    auto &left = panel.meters.inputMeters, &right = panel.meters.outputMeters;
    const std::vector<std::pair<luna::temp::LevelMeterPeakValue*, juce::String>> values {
        { &left.leftPeakValue, "-6.0" },   { &left.rightPeakValue, "-12.0" },
        { &left.leftRmsValue, "-9.0" },    { &left.rightRmsValue, "-12.0" },
        { &right.leftPeakValue, "-18.0" }, { &right.rightPeakValue, "-24.0" },
        { &right.leftRmsValue, "-21.0" },  { &right.rightRmsValue, "-24.0" },
    };

    // From this first picture on, whatever changes has to be painted again.
    EXPECT_TRUE (open.pictureOf (panel).isValid());
    p.inputLoudness.shortTerm = -20.06f;
    p.outputLoudness.shortTerm = -14.0f;
    p.shortTermDifference = -0.04f;
    p.inputMaxPeakDb = -7.26f;
    p.outputMaxPeakDb = -99.9f;
    p.peakDifference = 1.0f;

    const std::tuple<RealtimeLabel*, const char*, const char*> readouts[] {
        { &panel.shortTermInLabel, "Short Term In", "-20.1 LUFS" },
        { &panel.shortTermOutLabel, "Short Term Out", "-14.0 LUFS" },
        { &panel.lufsDifferenceLabel, "Difference", "0.0 LUFS" },
        { &panel.peakInLabel, "Peak In", "-7.3 dB" },
        { &panel.peakOutLabel, "Peak Out", "-99.9 dB" },
        { &panel.peakDifferenceLabel, "Difference", "1.0 dB" }
    };

    // Three at the top and three at the bottom.
    for (auto i = 0; i < 6; ++i)
        EXPECT_EQ (std::get<0> (readouts[i])->getBounds(),
                   juce::Rectangle<int> (20, (i < 3 ? 60 : 172) + 45 * i, 90, 45));

    const juce::Font font (juce::FontOptions (14.0f));
    const auto colour = [&] (int id) { return panel.findColour (id); };

    const auto expectShown = [&] (bool isOn)
    {
        for (const auto& [value, text] : values)
            EXPECT_TRUE (eventually ([&v = *value, t = isOn ? text : "-"] { return v.getText() == t; }))
                << text;

        for (const auto& [label, name, value] : readouts)
            EXPECT_TRUE (eventually (
                [&, &readout = *label, n = name, v = isOn ? value : "-"]
                {
                    const auto picture = open.pictureOf (readout);
                    const auto ground = colour (backgroundColourId);
                    const juce::Rectangle<int> top (90, 16), bottom (0, 16, 90, 18);
                    return pixels::showsText (picture, top, n, top, font,
                                              colour (isOn ? textColourId : disabledTextColourId), ground)
                           && pixels::showsText (picture, bottom, v, bottom, font.boldened(),
                                                 colour (isOn ? highlightedTextColourId : textColourId),
                                                 ground);
                }))
                << name << value;
    };

    expectShown (true);
    open.set ("enable", 0.0);
    expectShown (false);
    open.set ("enable", 1.0);

    // At their limits.
    p.inputLoudness.shortTerm = p.shortTermDifference = -300.0f;
    p.inputMaxPeakDb = p.peakDifference = -100.0f;
    p.outputMaxPeakDb = -0.04f;

    for (const auto& [label, text] : { std::pair { &panel.shortTermInLabel, "-" },
                                       { &panel.lufsDifferenceLabel, "-300.0 LUFS" },
                                       { &panel.peakInLabel, "-" },
                                       { &panel.peakOutLabel, "0.0 dB" },
                                       { &panel.peakDifferenceLabel, "-" } })
        EXPECT_EQ (label->getValueText(), text);
}

TEST (OutputPanel, MovesEachMeterWithItsChannelAlone)
{
    OpenEditor open;
    auto& [in, out] = open.plugin.processor.levels;
    auto& meters = open.editor->outputPanel.meters;
    const std::pair<luna::temp::LevelMeter*, LevelChannel*> pairs[] {
        { &meters.inputMeters.leftMeter, &in.left },
        { &meters.inputMeters.rightMeter, &in.right },
        { &meters.outputMeters.leftMeter, &out.left },
        { &meters.outputMeters.rightMeter, &out.right },
    };

    ASSERT_TRUE (eventually ([&] { return meters.outputMeters.rightRmsValue.getText().length() == 2; }))
        << "what reads the silence has settled";

    for (const auto& [meter, channel] : pairs)
    {
        const auto before = open.pictureOf (meters);
        EXPECT_TRUE (open.isMovedBy (*meter, [&c = *channel] { c.peak = 0.5; }));
        const auto moved = pixels::difference (before, open.pictureOf (meters));
        EXPECT_TRUE (meters.getLocalArea (meter, meter->getLocalBounds()).contains (moved))
            << moved.toString();
    }
}

TEST (OutputPanel, ClearsAllHeldValuesOnAClickOnAny)
{
    OpenEditor open;
    auto& panel = open.editor->outputPanel;
    auto& p = open.plugin.processor;
    std::vector<juce::Component*> targets { &panel.shortTermInLabel,    &panel.shortTermOutLabel,
                                            &panel.lufsDifferenceLabel, &panel.peakInLabel,
                                            &panel.peakOutLabel,        &panel.peakDifferenceLabel };

    for (auto* pair : { &panel.meters.inputMeters, &panel.meters.outputMeters })
        for (auto* value :
             { &pair->leftPeakValue, &pair->rightPeakValue, &pair->leftRmsValue, &pair->rightRmsValue })
            targets.push_back (value);

    for (auto* target : targets)
    {
        open.plugin.render (signals::sine (2, 48000, 997.0, 48000.0));
        ASSERT_GT (p.inputLoudness.shortTerm, -10.0f);
        ASSERT_GT (p.outputMaxPeakDb, -0.1f);
        EXPECT_EQ (target->getMouseCursor(), juce::MouseCursor::PointingHandCursor);
        open.window->clickMouse (*target, { 5, 5 }, juce::ModifierKeys::rightButtonModifier);

        // At once: the transport may have stopped.
        for (const auto* label :
             { &panel.shortTermInLabel, &panel.shortTermOutLabel, &panel.peakInLabel, &panel.peakOutLabel })
            EXPECT_EQ (label->getValueText(), "-") << label->name << target->getTitle();

        for (const auto* channel :
             { &p.levels.input.left, &p.levels.input.right, &p.levels.output.left, &p.levels.output.right })
            EXPECT_EQ (channel->maxPeak + static_cast<double> (channel->maxRmsSum), 0.0)
                << target->getTitle();
    }

    EXPECT_TRUE (eventually ([&value = panel.meters.outputMeters.rightRmsValue]
                             { return value.getText() == juce::String::fromUTF8 ("-\xe2\x88\x9e"); }));
}

TEST (Strips, MoveTheirGraphsWithWhatTheyShow)
{
    OpenEditor open;
    auto& p = open.plugin.processor;

    const std::vector<float> halfASecond (24000, 0.1f);
    const auto* channel = halfASecond.data();

    for (auto tap = 0; tap < 2; ++tap)
        EXPECT_TRUE (open.isMovedBy (open.editor->waveformGraph,
                                     [&] { p.waveformTaps.push (tap, 1, &channel, 0, 24000); }));

    open.set ("layout", 1);
    EXPECT_TRUE (open.isMovedBy (open.editor->bandEditor, [&] { p.spectrum.magnitudes.fill (0.1f); }));

    // A bypass greys out all between the bars.
    auto& e = *open.editor;
    open.set ("enable", 0.0);
    EXPECT_FALSE (e.waveformGraph.isEnabled() || e.bandEditor.isEnabled() || e.inputPanel.isEnabled());
    EXPECT_TRUE (e.topBar.isEnabled() && e.tooltipPanel.isEnabled());
}

TEST (Strips, ShowTheirTextsInTheTooltipStrip)
{
    OpenEditor open;
    auto& e = *open.editor;
    auto& choice = e.inputPanel.oversamplingButtons.buttons;
    auto& out = e.outputPanel;
    auto& bar = e.topBar;
    auto& browser = e.presetBrowser;
    open.plugin.setLicence ([] (auto& status) { status.showLicenceButton = true; });
    dispatchMessages();

    const auto expectTooltips = [&] (std::vector<std::pair<juce::Component*, const char*>> texts)
    {
        for (const auto& [component, text] : texts)
        {
            open.window->moveMouse (*component, { 8, 12 });
            EXPECT_TRUE (eventually ([&, t = text] { return e.tooltipPanel.tooltipLabel.getText() == t; }))
                << text << " instead of " << e.tooltipPanel.tooltipLabel.getText();
        }
    };

    expectTooltips ({
        { choice[0], "Single Band: Two clippers in series" },
        { choice[1], "Multi Band: Three clppers with adjustable frequency bands" },
        { choice[2], "Mid/Side: A clipper for each of the mid and side channels" },
        { choice[3], "Left/Right: A clipper for each of the left and right channels" },
        { choice[4], "Oversampling: 16x" },
        { e.inputPanel.layoutButtons.buttons[1], "" },
        { &e.inputPanel.inGainSlider.slider,
          "In Gain: Apply gain adjustment before entering the clipping stage" },
        { &out.shortTermInLabel, "Difference: The difference in LUFS between the input and output" },
        { &out.shortTermOutLabel, "Short Term In: The short-term LUFS value of the output" },
        { &out.lufsDifferenceLabel, "" },
        { &out.peakInLabel, "Peak In: The max peak value of the input" },
        { &out.peakOutLabel, "Peak Out: The The max peak value of the output" },
        { &out.peakDifferenceLabel,
          "Difference: The difference in dB between the input and output max peak" },
        { &out.meters.inputMeters.leftMeter, "Meter L: The left channel's levels at the input" },
        { &out.meters.inputMeters.rightMeter, "Meter R: The right channel's levels at the input" },
        { &out.meters.outputMeters.leftMeter, "Meter L: The left channel's levels at the output" },
        { &out.meters.outputMeters.rightMeter, "Meter R: The right channel's levels at the output" },
        { &out.meters.inputMeters.leftPeakValue, "Max Peak Value: Click to reset" },
        { &out.meters.outputMeters.leftRmsValue, "Max RMS Value: Click to reset" },
        { &out.meters.inputMeters.rightPeakValue, "Max Peak Value: Click to reset" },
        { &out.meters.outputMeters.rightRmsValue, "Max RMS Value: Click to reset" },
        { &e.singleEditor.graph,
          "Clipper Shape: Preview the shape and current level. Right click for more options" },
        { &e.singleEditor.thresholdSlider.slider, "Threshold: Values above this will be clipped" },
        { &e.singleEditor.shapeSlider.slider, "Shape: The shape of the clipper" },
        { &e.singleEditor.makeupSlider.nameLabel, "Makeup: Gain to apply to the output of the clipper" },
        { &e.singleEditor.modeBox, "Mode: Set the clipper mode" },
        { &e.singleEditor.modeLabel, "Clipper Mode: Select a clipper mode" },
        { &e.singleEditor.enableButton, "Enable: Enable the clipper section" },
        { &e.singleEditor.linkButton, "Link: Boost makeup gain to compensation for the threshold" },
        { &e.waveformGraph,
          "Waveform Graph: The filled waveform is the input to the plugin, and the line is the output" },
        { &bar.presetBrowserButton, "Open the preset browser" },
        { &bar.previousButton, "Previous preset" },
        { &bar.nextButton, "Next preset" },
        { &bar.saveButton, "Save the current state as a preset" },
        { &bar.licenceButton, "Show licence details" },
        { &bar.manualButton, "Open the user manual" },
        { &bar.updateButton, "Check for updates" },
        { &bar.settingsButton, "Open the plugin settings" },
        { &bar.bypassButton, "Bypass the processing" },
    });
    e.setPresetBrowserVisible (true);
    expectTooltips ({
        { browser.categories.badges[0],
          "Category Filter: Show only presets with a category of 'Tools'. Multiple filters can be selected. "
          "Right click to clear filters." },
        { &browser.randomButton, "Random Preset: Select a random preset from the list" },
        { &browser.modeToggle.left, "Show: Show any presets which match the filter" },
        { &browser.modeToggle.right, "Hide: Hide any presets which match the filter" },
        { &browser.matchToggle.left, "All: Presets must match all categories" },
        { &browser.matchToggle.right, "Any: Presets can match any category" },
    });
}
