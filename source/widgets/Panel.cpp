#include "Panel.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"
#include "widgets/IconStore.h"
#include "widgets/PixelPicture.h"

#include <LunaBinary.h>

namespace luna
{

namespace
{
constexpr auto titleAreaHeight = 50;
} // namespace

Panel::Panel()
{
    addAndMakeVisible (titleLabel);
    titleLabel.setFont (juce::FontOptions (FontHeights::title));
    titleLabel.setJustificationType (juce::Justification::topLeft);
    titleLabel.setBorderSize ({ 1, 0, 1, 0 });
    titleLabel.setInterceptsMouseClicks (false, false);
    titleLabel.setWantsKeyboardFocus (false);

    addComponentListener (this);
    setOpaque (true);
    bufferToPixels (*this);
}

Panel::~Panel()
{
    removeComponentListener (this);
}

juce::Rectangle<int> Panel::getContentBounds() const
{
    const auto y = getName().isEmpty() ? padding : titleLineY + 18;
    return { padding, y, getWidth() - 2 * padding, getHeight() - padding - y };
}

void Panel::updateTitle()
{
    titleLabel.setText (getName(), juce::dontSendNotification);
    setTitle (getName());

    // The title row, and with it the content's place, comes and goes with the name.
    if (! getBounds().isEmpty())
        layoutContent();

    repaint();
}

void Panel::mouseDown (const juce::MouseEvent& event)
{
    if (event.y >= titleAreaHeight)
        return;

    collapsed = ! collapsed;
    repaint();

    if (onCollapseToggled)
        onCollapseToggled();
}

void Panel::paint (juce::Graphics& g)
{
    auto* methods = dynamic_cast<LookAndFeelMethods*> (&getLookAndFeel());
    jassert (methods != nullptr);

    if (methods != nullptr)
        methods->drawPanelBackground (g, *this);

    g.setColour (findColour (isEnabled() ? ColourIds::textColourId : ColourIds::disabledTextColourId));

    const auto hidesLine = getName().isEmpty() || (collapsible && collapsed);

    if (! hidesLine)
        g.fillRect (padding, titleLineY, getWidth() - 2 * padding, 1);

    if (collapsible)
        paintArrow (g);
}

void Panel::paintArrow (juce::Graphics& g)
{
    const auto colour = findColour (ColourIds::textColourId);
    const auto titleCentre = titleLabel.getY() + titleLabel.getHeight() / 2;
    auto& icons = *IconStore::getInstance();
    const auto& icon = collapsed
                           ? icons.get (LunaBinary::angleup_svg, LunaBinary::angleup_svgSize, colour)
                           : icons.get (LunaBinary::angledown_svg, LunaBinary::angledown_svgSize, colour);
    icon.drawWithin (g, juce::Rectangle<int> (getWidth() - padding - 10, titleCentre - 5, 10, 10).toFloat(),
                     juce::RectanglePlacement::centred, 1.0f);
}

void Panel::resized()
{
    titleLabel.setBounds (padding, 10, getWidth() - padding, 30);
    layoutContent();
}

void Panel::lookAndFeelChanged()
{
    titleLabel.setFont (getLookAndFeel().getLabelFont (titleLabel).withHeight (FontHeights::title));
    repaint();
}

} // namespace luna
