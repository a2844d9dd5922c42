#include "widgets/PixelPicture.h"

#include "OffscreenWindow.h"
#include "Pixels.h"

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

        g.setColour (juce::Colours::white);
        g.drawRoundedRectangle (getLocalBounds().toFloat().reduced (1.0f), 4.0f, 1.0f);
        g.fillRect (2, 9 + place, getWidth() - 4, 1);
        g.drawText ("Threshold", getLocalBounds(), juce::Justification::centred, false);
    }

    int place = 0;
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
} // namespace
