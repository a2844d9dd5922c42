#include "editor/OpenEditor.h"

#include <gtest/gtest.h>

TEST (OutputPanel, WritesItsReadoutsWithOneDecimal)
{
    OpenEditor open;
    auto& panel = open.editor->outputPanel;
    const auto& difference = panel.lufsDifferenceLabel.valueToString;

    for (const auto& [format, value, text] : { std::tuple { &panel.peakValToLabel, -0.04f, "0.0 dB" },
                                               { &panel.peakValToLabel, -100.0f, "-" },
                                               { &panel.peakValToLabel, -99.9f, "-99.9 dB" },
                                               { &panel.peakValToLabel, 3.26f, "3.3 dB" },
                                               { &panel.lufsToLabel, -300.0f, "-" },
                                               { &panel.lufsToLabel, -23.0f, "-23.0 LUFS" },
                                               { &difference, -300.0f, "-300.0 LUFS" },
                                               { &difference, -0.04f, "0.0 LUFS" } })
        EXPECT_EQ ((*format) (value), text) << value;
}

TEST (OutputPanel, ClearsAllHeldValuesOnAClick)
{
    for (const auto clicksReadout : { true, false })
    {
        OpenEditor open;
        auto& panel = open.editor->outputPanel;
        auto& processor = open.plugin.processor;
        open.plugin.render (signals::sine (2, 48000, 997.0, 48000.0));
        ASSERT_GT (processor.inputLoudness.shortTerm, -10.0f);
        ASSERT_GT (processor.outputMaxPeakDb, -0.1f);

        auto& target = clicksReadout ? static_cast<juce::Component&> (panel.peakOutLabel)
                                     : panel.meters.inputMeters.leftPeakValue;
        open.window->clickMouse (target, { 5, 5 });

        // At once: the transport may have stopped.
        for (const auto* label :
             { &panel.shortTermInLabel, &panel.shortTermOutLabel, &panel.peakInLabel, &panel.peakOutLabel })
            EXPECT_EQ (label->valueToString (*label->source), "-") << label->name;

        EXPECT_EQ (processor.levels.output.right.maxPeak, 0.0);
    }
}

TEST (Strips, StandWhereTheirFormulasPutThem)
{
    using juce::Rectangle;
    OpenEditor open;
    auto& input = open.editor->inputPanel;
    auto& output = open.editor->outputPanel;

    // Content: 20, 60, 100 by 382. Groups of 100, 120 and 95, with what is left shared between them.
    const auto gap = (382.0f - 100.0f - 120.0f - 95.0f) / 2.0f;
    EXPECT_EQ (input.layoutButtons.getBounds(), (Rectangle<int> (20, 80, 100, 80)));
    EXPECT_EQ (input.oversamplingButtons.getBounds().withY (0), (Rectangle<int> (20, 0, 100, 100)));
    EXPECT_NEAR (input.oversamplingButtons.getY(), 60.0f + 100.0f + gap + 20.0f, 0.5f);
    EXPECT_EQ (input.inGainSlider.getBounds(), (Rectangle<int> (40, 442 - 95, 60, 95)));

    const auto content = output.getContentBounds();
    EXPECT_EQ (output.meters.getBounds(), content.withTrimmedLeft (90));
    EXPECT_EQ (output.shortTermInLabel.getBounds(), content.withSize (90, 45));
    EXPECT_EQ (output.peakDifferenceLabel.getBounds(), content.withWidth (90).removeFromBottom (45));
    EXPECT_EQ (output.peakInLabel.getY(), content.getBottom() - 135);
}

TEST (Strips, ShowTheirTextsInTheTooltipStrip)
{
    OpenEditor open;
    auto& e = *open.editor;
    auto& choice = e.inputPanel.oversamplingButtons.buttons;
    auto& out = e.outputPanel;

    const auto expectTooltips = [&] (std::vector<std::pair<juce::Component*, const char*>> texts)
    {
        for (const auto& [component, text] : texts)
        {
            open.window->moveMouse (*component, { 8, 12 });
            e.tooltipPanel.refresh();
            EXPECT_EQ (e.tooltipPanel.tooltipLabel.getText(), text);
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
        { &out.meters.outputMeters.rightMeter, "Meter R: The right channel's levels at the output" },
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
    });
}
