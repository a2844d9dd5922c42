#include "TopBar.h"

namespace tessarin
{

TopBar::TopBar (TessarinEditor&)
{
    addAndMakeVisible (background);
    background.setInterceptsMouseClicks (false, false);
}

void TopBar::resized()
{
    background.setBounds (getLocalBounds());
}

} // namespace tessarin
