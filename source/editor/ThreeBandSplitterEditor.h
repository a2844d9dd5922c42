#pragma once

#include "widgets/EndlessDrag.h"
#include "widgets/ParameterSteps.h"
#include "widgets/PixelPicture.h"
#include "widgets/SpectrumAnalyser.h"
#include "widgets/ValueField.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <array>
#include <atomic>
#include <memory>
#include <optional>

/** The spectrum of the multi-band layout with the bands over it: two bars that move the crossovers, and three
    round buttons a band to mute, solo and enable it. There are no child components: all of it is painted with
    the spectrum, tested for hits by hand, and reached by the tab key as if each were one.

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
    void mouseDoubleClick (const juce::MouseEvent&) override;
    void mouseWheelMove (const juce::MouseEvent&, const juce::MouseWheelDetails&) override;
    bool keyPressed (const juce::KeyPress&) override;
    void focusGained (FocusChangeType) override;
    void focusLost (FocusChangeType) override;
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

    /** What the mouse and the keyboard find in here. */
    struct Spot
    {
        enum Kind
        {
            mute,
            solo,
            enable,
            bar
        };

        Kind kind;

        /** Of the band, or of the bar: 0 or 1. */
        size_t index;
    };

    /** From the left to the right, which is the tab key's order. */
    static constexpr std::array spots {
        Spot { Spot::mute, 0 }, Spot { Spot::solo, 0 }, Spot { Spot::enable, 0 }, Spot { Spot::bar, 0 },
        Spot { Spot::mute, 1 }, Spot { Spot::solo, 1 }, Spot { Spot::enable, 1 }, Spot { Spot::bar, 1 },
        Spot { Spot::mute, 2 }, Spot { Spot::solo, 2 }, Spot { Spot::enable, 2 }
    };

    [[nodiscard]] juce::Rectangle<int> getBounds (const Spot&) const;

    /** Beside the bar, where its frequency is shown and typed. */
    [[nodiscard]] juce::Rectangle<int> getReadoutBounds (size_t bar) const;

    using SpectrumAnalyser::getBounds;

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
    using Overlay = std::array<int, 16>;

    [[nodiscard]] Overlay getOverlay() const;

    void refreshBandBounds()
    {
        if (boundsAreStale)
            updateBandBounds();
    }

    /** What is shown of them and moves with them: crossovers, solo, mutes and switches. */
    [[nodiscard]] juce::StringArray getShownParameters() const;

    [[nodiscard]] int getBarPosition (const juce::String& crossoverId) const;
    [[nodiscard]] double getExactBarPosition (const juce::String& crossoverId) const;
    [[nodiscard]] juce::RangedAudioParameter* getParameter (const Spot&) const;
    [[nodiscard]] juce::String getSpotTitle (const Spot&) const;

    /** Null where there is none. A bar lies over the buttons. */
    [[nodiscard]] const Spot* getSpotAt (juce::Point<int> position) const;

    /** Null without the keyboard. */
    [[nodiscard]] const Spot* getFocusedSpot() const;

    /** Whether the bar's frequency is shown: under the mouse, in a drag, or with the keyboard's focus. */
    [[nodiscard]] bool showsFrequency (size_t bar) const;

    void press (const Spot&);
    void focusSpot (int place);
    void typeFrequency (size_t bar, const juce::String& typed);
    void showMenu (const Spot&, juce::Point<int> placeOnScreen);
    void beginDrag (const juce::MouseEvent&);
    void endDrag();

    [[nodiscard]] juce::String getButtonTooltip (const Band&) const;

    void paintBands (juce::Graphics&) const;
    void paintBand (juce::Graphics&, const Band&) const;
    void paintButton (juce::Graphics&, const ButtonLook&) const;
    void paintHandle (juce::Graphics&, juce::Rectangle<int> bounds, bool isHovered) const;
    void paintFrequency (juce::Graphics&, size_t bar) const;
    void paintFocus (juce::Graphics&) const;

    /** Whose gesture is open. */
    juce::RangedAudioParameter* draggedCrossover = nullptr;

    /** Where the pointer would be if it had never been slowed down or set back. */
    float dragX = 0.0f;
    luna::EndlessDrag drag { *this, luna::EndlessDrag::Direction::horizontal };

    /** Where the mouse stood when the wheel turned a bar, until it moves. */
    static constexpr juce::Point<int> nowhere { -1, -1 };
    juce::Point<int> wheelPosition = nowhere;

    /** Of the two crossovers. */
    std::array<std::optional<luna::ParameterSteps>, 2> steps;
    std::array<std::unique_ptr<luna::ValueField>, 2> fields;

    /** The place among the spots that has the keyboard, or had it last. */
    int focusedPlace = 0;

    std::atomic<bool> boundsAreStale { false };

    /** Of the last frame. */
    Overlay overlay {};

    Overlay paintedOverlay {};
    luna::PixelPicture overlayPicture { *this, [this] (juce::Graphics& g) { paintBands (g); } };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ThreeBandSplitterEditor)
};
