#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace tessarin
{

/** A text of licensing's over the editor, shown while there is one. Message thread. */
class LicenceOverlay final : public juce::Component
{
public:
    enum class Kind
    {
        /** Darkens what is under it, and keeps mouse and keyboard from it. */
        cover,

        /** Takes no mouse. */
        notice
    };

    explicit LicenceOverlay (Kind kindToShow) : kind (kindToShow)
    {
        setInterceptsMouseClicks (kind == Kind::cover, false);
        setWantsKeyboardFocus (kind == Kind::cover);
    }

    /** An empty one hides it. */
    void setText (const juce::String& newText);

    void paint (juce::Graphics&) override;
    void mouseDown (const juce::MouseEvent&) override;

    /** Space and return do what a click does. The tab key would go on to what is covered. */
    bool keyPressed (const juce::KeyPress&) override;

    std::function<void()> onClick;

private:
    const Kind kind;
    juce::String text;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (LicenceOverlay)
};

} // namespace tessarin
