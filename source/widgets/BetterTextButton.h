#pragma once

#include "widgets/LeftClickButton.h"

#include <functional>

namespace luna
{

/** A text button that knows a right click, and whose text can be edited in place where `onTextEdited` is set.
    */
class BetterTextButton : public LeftClickButton
{
public:
    explicit BetterTextButton (const juce::String& initialText = {});

    void resized() override;
    void paintButton (juce::Graphics&, bool isHighlighted, bool isDown) override;

    void buttonStateChanged() override { updateTextColour(); }

    void enablementChanged() override;
    void lookAndFeelChanged() override;

    std::function<void (BetterTextButton*)> onRightClick;
    std::function<void (BetterTextButton*, juce::String)> onTextEdited;
    int editIndex = -1;

    /** Shows the text. It takes no mouse unless the text can be edited, or it would hide the button. */
    struct TextLabel : public juce::Label
    {
        explicit TextLabel (BetterTextButton& ownerToUse) : owner (ownerToUse) {}

        bool hitTest (int x, int y) override
        {
            return owner.onTextEdited != nullptr && juce::Label::hitTest (x, y);
        }

        BetterTextButton& owner;
    };

    TextLabel label { *this };

protected:
    void rightButtonPressed() override;

private:
    void updateTextColour();

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (BetterTextButton)
};

} // namespace luna
