#include "InputOutputMeters.h"

namespace luna::temp
{

namespace
{
constexpr auto margin = 10;
constexpr auto captionHeight = 15;

/** What lies between both pairs: the ticks and 5 pixels on either side. */
constexpr auto middleWidth = 55;
} // namespace

InputOutputMeters::InputOutputMeters (Processor* processorToShow)
    : processor (processorToShow),
      inputMeters (processor != nullptr ? &processor->input : nullptr, showPeakValues, showRmsValues),
      ticks (&inputMeters.rightMeter),
      outputMeters (processor != nullptr ? &processor->output : nullptr, showPeakValues, showRmsValues)
{
    onMaxClick = [this]
    {
        if (processor != nullptr)
            processor->resetMaxima();
    };

    nameMeters (inputMeters, " at the input", "Input: ");
    nameMeters (outputMeters, " at the output", "Output: ");

    ticks.ticks = { 0, -3, -6, -9, -12, -18, -30, -60 };
    ticks.side = 2;

    addAndMakeVisible (inputMeters);
    addAndMakeVisible (ticks);
    addAndMakeVisible (outputMeters);

    addCaption (peakCaption, "Peak");
    addCaption (rmsCaption, "RMS");
    addCaption (inCaption, "In");
    addCaption (outCaption, "Out");

    for (size_t i = 0; i < channelCaptions.size(); ++i)
        addCaption (channelCaptions[i], i % 2 == 0 ? "L" : "R");
}

void InputOutputMeters::nameMeters (StereoLevelMeters& meters, const juce::String& place,
                                    const juce::String& title)
{
    for (auto* meter : { &meters.leftMeter, &meters.rightMeter })
    {
        meter->setTooltip (meter->getTooltip() + place);
        meter->setTitle (title + meter->getTitle());
    }

    for (auto* readOut :
         { &meters.leftPeakValue, &meters.rightPeakValue, &meters.leftRmsValue, &meters.rightRmsValue })
        readOut->setTitle (title + readOut->getTitle());

    meters.onMaxClick = [this]
    {
        if (onMaxClick != nullptr)
            onMaxClick();
    };
}

void InputOutputMeters::addCaption (juce::Label& caption, const juce::String& text)
{
    constexpr auto fontHeight = 11.0f;

    caption.setText (text, juce::dontSendNotification);
    caption.setFont (juce::FontOptions (fontHeight));
    caption.setJustificationType (juce::Justification::centred);
    caption.setBorderSize ({});
    caption.setInterceptsMouseClicks (false, false);
    addAndMakeVisible (caption);
}

void InputOutputMeters::resized()
{
    const auto width = juce::jmax (0, getWidth() - 2 * margin);
    const auto height = juce::jmax (0, getHeight() - 2 * margin);
    const auto bodyHeight = juce::jmax (0, height - 2 * captionHeight);
    const auto pairWidth = juce::jmax (0, (width - middleWidth) / 2);
    const auto channelOffset = juce::jmax (0, (width - middleWidth) / 4);

    inputMeters.setReadOutsVisible (showPeakValues, showRmsValues);
    outputMeters.setReadOutsVisible (showPeakValues, showRmsValues);
    inputMeters.setBounds (margin, margin, pairWidth, juce::jmax (0, bodyHeight - 5));
    outputMeters.setBounds (inputMeters.getBounds().withX (margin + width - pairWidth));
    placeTicks();

    inCaption.setBounds (margin, bodyHeight + 25, pairWidth, captionHeight);
    outCaption.setBounds (inCaption.getBounds().withX (outputMeters.getX()));

    for (size_t i = 0; i < channelCaptions.size(); ++i)
    {
        const auto pairX = i < 2 ? margin : outputMeters.getX();
        channelCaptions[i].setBounds (pairX + (i % 2 == 0 ? 0 : channelOffset), bodyHeight + 10,
                                      pairWidth - channelOffset, captionHeight);
    }
}

void InputOutputMeters::placeTicks()
{
    const auto meter = getLocalArea (&inputMeters, inputMeters.rightMeter.getBounds());
    ticks.setBounds (meter.getRight() + 5, meter.getY() - 10, ticks.side == 2 ? 45 : 50,
                     meter.getHeight() + 20);

    const juce::Rectangle<int> row { ticks.getX(), margin, ticks.getWidth(), captionHeight };
    peakCaption.setVisible (showPeakValues);
    peakCaption.setBounds (row);
    rmsCaption.setVisible (showRmsValues);
    rmsCaption.setBounds (showPeakValues ? row.translated (0, captionHeight) : row);
}

} // namespace luna::temp
