#pragma once

#include "widgets/PixelPicture.h"
#include "widgets/SpectrumAnalyser.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <array>
#include <atomic>

/** The spectrum of the multi-band layout with the bands over it: two bars that move the crossovers, and three
    round buttons a band to mute, solo and enable it. There are no child components: all of it is painted with
    the spectrum, and tested for hits by hand.

    Message thread, but for `parameterChanged`, which any thread may call.
*/
class ThreeBandSplitterEditor final : public luna::SpectrumAnalyser,
                                      public juce::AudioProcessorValueTreeState::Listener
{
public:
    /** One band's column of the plot. A parameter that the tree does not hold is null. */
    struct Band
    {
        juce::Rectangle<int> bounds;
        juce::Rectangle<int> muteBounds;
        juce::Rectangle<int> soloBounds;
        juce::Rectangle<int> enableBounds;
        juce::Colour colour;

        /** The value of "solo_band" that solos this band. */
        int index = 0;

        juce::RangedAudioParameter* muteParameter = nullptr;

        /** Shared by all bands. */
        juce::RangedAudioParameter* soloParameter = nullptr;

        juce::RangedAudioParameter* enableParameter = nullptr;

        [[nodiscard]] bool isMuted() const;
        [[nodiscard]] bool isEnabled() const;

        /** The index of the band that is heard alone, or `Solo::none`. */
        [[nodiscard]] int getSoloBand() const;
    };

    /** `source` and `state` outlive the editor. */
    ThreeBandSplitterEditor (const SpectrumData& source, juce::AudioProcessorValueTreeState& state,
                             juce::String lowCrossoverId, juce::String highCrossoverId);
    ~ThreeBandSplitterEditor() override;

    /** Takes the theme's colours; once, when the look and feel is in place. A theme that changes later shows when
        the editor is opened again. */
    void readBandColours();

    void mouseMove (const juce::MouseEvent&) override;
    void mouseExit (const juce::MouseEvent&) override;
    void mouseDown (const juce::MouseEvent&) override;
    void mouseDrag (const juce::MouseEvent&) override;
    void mouseUp (const juce::MouseEvent&) override;
    void enablementChanged() override;
    void visibilityChanged() override;
    void timerCallback() override;
    void paintOverChildren (juce::Graphics&) override;

    void plotChanged() override { updateBandBounds(); }

    juce::String getTooltip() override;

    /** Only notes that the bars have moved; the message thread moves them before it looks at them. */
    void parameterChanged (const juce::String&, float) override { boundsAreStale = true; }

    /** Places the columns, bars and buttons by the crossovers. */
    void updateBandBounds();

    juce::AudioProcessorValueTreeState* state;
    const juce::String lowCrossoverId;
    const juce::String highCrossoverId;

    /** In pixels; -1 until first computed. */
    int lowCrossoverX = -1;
    int highCrossoverX = -1;
    juce::Rectangle<int> lowHandleBounds;
    juce::Rectangle<int> highHandleBounds;

    juce::Colour muteColour, soloColour, enableColour, inactiveColour, buttonBackgroundColour;

    /** Low, mid, high. */
    std::array<Band, 3> bands;
    Band* hoveredBand = nullptr;

    /** 0: low; 1: high; -1: none. */
    int hoveredHandle = -1;

    bool hoverMute = false;
    bool hoverSolo = false;
    bool hoverEnable = false;

private:
    struct ButtonLook
    {
        juce::Rectangle<int> bounds;
        juce::String label;
        juce::Colour colour;
        bool on = false;
        bool active = true;
        bool hovered = false;
    };

    /** All that is painted over the spectrum, as numbers. */
    using Overlay = std::array<int, 13>;

    [[nodiscard]] Overlay getOverlay() const;

    void refreshBandBounds()
    {
        if (boundsAreStale)
            updateBandBounds();
    }

    /** What is shown of them and moves with them: crossovers, solo, mutes and switches. */
    [[nodiscard]] juce::StringArray getShownParameters() const;

    [[nodiscard]] int getBarPosition (const juce::String& crossoverId) const;
    [[nodiscard]] juce::RangedAudioParameter* getHoveredCrossover() const;
    void clickButtons (Band&, juce::Point<int> position);
    void endDrag();

    [[nodiscard]] juce::String getButtonTooltip (const Band&) const;

    void paintBands (juce::Graphics&) const;
    void paintBand (juce::Graphics&, const Band&) const;
    void paintButton (juce::Graphics&, const ButtonLook&) const;
    void paintHandle (juce::Graphics&, juce::Rectangle<int> bounds, bool isHovered) const;

    std::unique_ptr<juce::Drawable> enableIconOn;
    std::unique_ptr<juce::Drawable> enableIconOff;
    std::unique_ptr<juce::Drawable> enableIconInactive;

    /** Whose gesture is open. */
    juce::RangedAudioParameter* draggedCrossover = nullptr;

    std::atomic<bool> boundsAreStale { false };

    /** Of the last frame. */
    Overlay overlay {};

    Overlay paintedOverlay {};
    luna::PixelPicture overlayPicture { *this, [this] (juce::Graphics& g) { paintBands (g); } };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ThreeBandSplitterEditor)
};
