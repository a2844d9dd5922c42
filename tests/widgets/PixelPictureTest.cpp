#include "widgets/PixelPicture.h"

#include "OffscreenWindow.h"
#include "Pixels.h"
#include "support/Messages.h"
#include "widgets/PictureDelay.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace luna;

namespace
{
/** Text, a line of one unit, and a rounded corner: all that a picture between the pixels makes soft. */
class Exhibit final : public juce::Component
{
public:
    void paint (juce::Graphics& g) override
    {
        if (isOpaque())
            g.fillAll (juce::Colours::darkblue);

        ++paints;
        g.setColour (juce::Colours::white);
        g.drawRoundedRectangle (getLocalBounds().toFloat().reduced (1.0f), 4.0f, 1.0f);
        g.fillRect (2, 9 + place, getWidth() - 4, 1);
        g.drawText ("Threshold", getLocalBounds(), juce::Justification::centred, false);
    }

    int place = 0, paints = 0;
};

struct Resizable final : juce::Component, PictureDelay
{
    Resizable() { setOpaque (true); }

    void paint (juce::Graphics& g) override { g.fillAll (juce::Colours::black); }

    using PictureDelay::putOffPictures;
};

/** Where a curve is rounded otherwise, some levels of 255; a picture that is resampled is wrong by a hundred. */
int countFarPixels (const juce::Image& a, const juce::Image& b)
{
    constexpr auto tolerance = 16;
    auto number = 0;

    for (auto y = 0; y < a.getHeight(); ++y)
        for (auto x = 0; x < a.getWidth(); ++x)
            number += pixels::areNear (a.getPixelAt (x, y), b.getPixelAt (x, y), tolerance) ? 0 : 1;

    return number;
}

/** The scale, and whether the components are opaque. */
class PixelPictures : public testing::TestWithParam<std::tuple<float, bool>>
{
protected:
    PixelPictures()
    {
        const auto [scale, isOpaque] = GetParam();

        for (auto* each : { &outer, &inner })
            each->setOpaque (isOpaque);

        holder.setSize (400, 200);
        holder.addAndMakeVisible (outer);
        outer.setTransform (juce::AffineTransform::scale (scale));
        outer.setBounds (7, 5, 151, 63);
        outer.addAndMakeVisible (inner);
        inner.setBounds (13, 21, 71, 31);
    }

    pixels::Ground holder;
    Exhibit outer, inner;
};

TEST_P (PixelPictures, AreWhatTheComponentWouldPaint)
{
    OffscreenWindow screen (holder);
    const auto painted = screen.render();
    bufferToPixels (outer);
    bufferToPixels (inner, PixelPicture::Parts::tiles);
    screen.repaint();
    EXPECT_EQ (countFarPixels (painted, screen.render()), 0);

    // Moved, and repainted in part.
    inner.setTopLeftPosition (22, 20);
    outer.place = 3;
    outer.repaint (0, 9, 151, 4);
    const auto changed = screen.render();

    for (auto* each : { &outer, &inner })
        each->setCachedComponentImage (nullptr);

    screen.repaint();
    EXPECT_EQ (countFarPixels (screen.render(), changed), 0);
}

INSTANTIATE_TEST_SUITE_P (ScalesAndKinds, PixelPictures,
                          testing::Combine (testing::Values (0.5f, 0.75f, 1.0f, 1.1f, 1.25f, 1.5f, 2.0f),
                                            testing::Bool()));

TEST (PictureDelay, PaintsWhatGetsAnotherSizeUntilTheWindowStandsAndKeepsItThen)
{
    Resizable holder;
    Exhibit outer, inner;
    holder.setSize (400, 200);
    holder.addAndMakeVisible (outer);
    outer.addAndMakeVisible (inner);
    outer.setBounds (7, 5, 151, 63);
    inner.setBounds (13, 21, 71, 31);

    for (auto* each : { &outer, &inner })
        bufferToPixels (*each);

    OffscreenWindow screen (holder);
    juce::Image picture;
    const auto paintsIn = [&] (const auto& change)
    {
        const auto before = inner.paints;
        change();
        picture = screen.render();
        return inner.paints - before;
    };
    const auto repaintGround = [&] { holder.repaint(); };

    EXPECT_EQ (paintsIn ([] {}), 1);
    holder.putOffPictures();
    EXPECT_EQ (paintsIn (repaintGround), 0) << "it has the size that it had";

    for (const auto width : { 80, 90 })
    {
        const auto resize = [&, w = width]
        {
            outer.setSize (w + 80, 63);
            inner.setSize (w, 31);
        };
        EXPECT_EQ (paintsIn (resize), 1);
        EXPECT_EQ (paintsIn (repaintGround), 1) << "it is not kept";
    }

    const auto before = picture;
    EXPECT_TRUE (eventually ([&] { return paintsIn ([] {}) > 0; })) << "it asks for a paint by itself";
    EXPECT_EQ (paintsIn (repaintGround), 0);
    EXPECT_EQ (countFarPixels (before, picture), 0);
}
} // namespace
