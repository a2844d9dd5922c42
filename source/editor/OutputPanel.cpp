#include "OutputPanel.h"

#include "common/ColourIds.h"

namespace
{
constexpr auto readoutWidth = 90;

/** With one decimal place, and no sign before a zero. */
juce::String withUnit (float value, const juce::String& unit)
{
    const auto text = juce::String (value, 1);
    return (text == "-0.0" ? juce::String ("0.0") : text) + unit;
}

juce::String toPeakText (float decibels)
{
    constexpr auto noPeak = -100.0f;
    return decibels > noPeak ? withUnit (decibels, " dB") : juce::String ("-");
}

juce::String toLoudnessText (float loudness)
{
    return loudness > kf::noLoudness ? juce::String (loudness, 1) + " LUFS" : juce::String ("-");
}

juce::String toLoudnessDifferenceText (float difference)
{
    return withUnit (difference, " LUFS");
}
} // namespace

OutputPanel::OutputPanel (OrvoAudioProcessor& owner)
    : peakValToLabel (toPeakText),
      lufsToLabel (toLoudnessText),
      meters (&owner.levels),
      shortTermInLabel (&owner.inputLoudness.shortTerm, "Short Term In", lufsToLabel),
      shortTermOutLabel (&owner.outputLoudness.shortTerm, "Short Term Out", lufsToLabel),
      lufsDifferenceLabel (&owner.shortTermDifference, "Difference", toLoudnessDifferenceText),
      peakInLabel (&owner.inputMaxPeakDb, "Peak In", peakValToLabel),
      peakOutLabel (&owner.outputMaxPeakDb, "Peak Out", peakValToLabel),
      peakDifferenceLabel (&owner.peakDifference, "Difference", peakValToLabel),
      processor (owner)
{
    setName ("Output");
    addAndMakeVisible (meters);
    meters.onMaxClick = [this] { resetMeters(); };

    auto place = 0;

    for (auto* readout : getReadouts())
    {
        addAndMakeVisible (*readout);
        readout->setExplicitFocusOrder (++place);
        readout->onClick = [this] { resetMeters(); };
    }

    meters.setExplicitFocusOrder (++place);

    // Full scale, which what comes in may exceed.
    for (auto* peak : { &peakInLabel, &peakOutLabel })
        peak->greatestPlainValue = 0.0f;

    // Two readouts show the same name, which tells nothing to those who only hear it.
    lufsDifferenceLabel.setTitle ("Loudness difference");
    peakDifferenceLabel.setTitle ("Peak difference");
    setTooltips();
}

void OutputPanel::setTooltips()
{
    // The difference's text replaces that of the readout above it, as released.
    shortTermInLabel.setTooltip ("Short Term In: The short-term LUFS value of the input");
    shortTermOutLabel.setTooltip ("Short Term In: The short-term LUFS value of the output");
    shortTermInLabel.setTooltip ("Difference: The difference in LUFS between the input and output");

    peakInLabel.setTooltip ("Peak In: The max peak value of the input");
    peakOutLabel.setTooltip ("Peak Out: The The max peak value of the output");
    peakDifferenceLabel.setTooltip ("Difference: The difference in dB between the input and output max peak");
}

std::array<RealtimeLabel*, 6> OutputPanel::getReadouts()
{
    return { &shortTermInLabel, &shortTermOutLabel, &lufsDifferenceLabel,
             &peakInLabel,      &peakOutLabel,      &peakDifferenceLabel };
}

void OutputPanel::resetMeters()
{
    processor.resetMeasurements();
}

void OutputPanel::paint (juce::Graphics& g)
{
    Panel::paint (g);
    g.setColour (findColour (luna::ColourIds::backgroundColourId));
    g.fillRect (getContentBounds());
}

void OutputPanel::layoutContent()
{
    constexpr auto readoutHeight = 45.0f;
    constexpr auto groupHeight = 3.0f * readoutHeight;
    const auto content = getContentBounds();

    meters.setBounds (content.withTrimmedLeft (readoutWidth));

    const auto makeGroup = [] (std::initializer_list<RealtimeLabel*> labels)
    {
        juce::FlexBox group;
        group.flexDirection = juce::FlexBox::Direction::column;

        for (auto* label : labels)
            group.items.add (juce::FlexItem (*label).withHeight (readoutHeight));

        return group;
    };

    auto loudness = makeGroup ({ &shortTermInLabel, &shortTermOutLabel, &lufsDifferenceLabel });
    auto peaks = makeGroup ({ &peakInLabel, &peakOutLabel, &peakDifferenceLabel });

    juce::FlexBox column;
    column.flexDirection = juce::FlexBox::Direction::column;
    column.justifyContent = juce::FlexBox::JustifyContent::spaceBetween;
    column.items = { juce::FlexItem (loudness).withHeight (groupHeight),
                     juce::FlexItem (peaks).withHeight (groupHeight) };
    column.performLayout (content.withWidth (readoutWidth));
}
