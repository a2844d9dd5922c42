#include "Sheet.h"

#include "common/ColourIds.h"

namespace
{
constexpr auto gap = 20;
constexpr auto captionHeight = 16;
constexpr auto sheetWidth = 1100;

/** A ground in the panel's colour, as the widgets stand on in the editor. */
struct Ground : public juce::Component
{
    explicit Ground (std::unique_ptr<juce::Component> widgetToShow) : widget (std::move (widgetToShow))
    {
        addAndMakeVisible (*widget);
    }

    void paint (juce::Graphics& g) override { g.fillAll (findColour (luna::ColourIds::panelColourId)); }

    void resized() override { widget->setBounds (getLocalBounds()); }

    std::unique_ptr<juce::Component> widget;
};

juce::Image renderExhibit (const Exhibit& exhibit, float scale)
{
    Ground ground (exhibit.make());
    ground.setSize (exhibit.width, exhibit.height);

    OffscreenWindow window (ground);

    if (exhibit.pose)
        exhibit.pose (window, *ground.widget);

    return window.render (scale);
}

/** Where each exhibit stands, in rows; the last rectangle is the whole sheet. */
std::vector<juce::Rectangle<int>> layOut (const std::vector<Exhibit>& exhibits)
{
    std::vector<juce::Rectangle<int>> places;
    juce::Point<int> position (gap, gap);
    auto rowHeight = 0;

    for (const auto& exhibit : exhibits)
    {
        const auto cellWidth = juce::jmax (exhibit.width, 90);

        if (position.x > gap && position.x + cellWidth + gap > sheetWidth)
        {
            position = { gap, position.y + rowHeight + captionHeight + gap };
            rowHeight = 0;
        }

        places.emplace_back (position.x, position.y, exhibit.width, exhibit.height);
        position.x += cellWidth + gap;
        rowHeight = juce::jmax (rowHeight, exhibit.height);
    }

    places.emplace_back (0, 0, sheetWidth, position.y + rowHeight + captionHeight + gap);
    return places;
}
} // namespace

juce::Image renderSheet (const Sheet& sheet, float scale)
{
    const auto places = layOut (sheet.exhibits);
    const auto size = places.back() * scale;
    juce::Image image (juce::Image::RGB, size.getWidth(), size.getHeight(), true, juce::SoftwareImageType());

    juce::Graphics g (image);
    g.addTransform (juce::AffineTransform::scale (scale));

    auto& lookAndFeel = juce::LookAndFeel::getDefaultLookAndFeel();
    g.fillAll (lookAndFeel.findColour (luna::ColourIds::panelColourId));
    g.setColour (lookAndFeel.findColour (luna::ColourIds::textColourId));
    g.setFont (juce::FontOptions (11.0f));

    for (size_t i = 0; i < sheet.exhibits.size(); ++i)
    {
        const auto& place = places[i];
        g.drawImage (renderExhibit (sheet.exhibits[i], scale), place.toFloat());
        g.drawText (sheet.exhibits[i].caption, place.getX(), place.getBottom() + 2,
                    juce::jmax (place.getWidth(), 105), captionHeight, juce::Justification::centredLeft,
                    true);
    }

    return image;
}
