#pragma once

#include "widgets/Panel.h"

namespace tessarin
{

class TessarinEditor;

/** The strip along the top of the editor. Message thread. */
class TopBar final : public juce::Component
{
public:
    explicit TopBar (TessarinEditor& editor);

    void resized() override;

private:
    luna::Panel background;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (TopBar)
};

} // namespace tessarin
