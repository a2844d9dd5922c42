#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>

namespace luna
{

/** A small field over a value, in which another one is typed. The return key takes it; what is no value is refused,
    marked, and stays to be mended. Escape, a click elsewhere and the tab key leave the value as it was.

    It lies in the editor over all panels, so that it can be wider than what it covers. Message thread.
*/
class ValueField final : public juce::TextEditor
{
public:
    /** Sets the value. False if the text is none. */
    using Taker = std::function<bool (const juce::String&)>;

    /** The control outlives the field. */
    ValueField (juce::Component& control, Taker);
    ~ValueField() override;

    /** Over this area of the control. What was typed already goes on; else the value can be typed over. */
    void open (juce::Rectangle<int> area, const juce::String& value, const juce::String& typed);

    [[nodiscard]] bool isRefused() const noexcept { return refused; }

private:
    class Surroundings;

    void take();
    void close();
    void focusLost (FocusChangeType) override;
    void paintOverChildren (juce::Graphics&) override;

    juce::Component& control;
    const Taker taker;
    bool refused = false, isClosing = false;

    /** What had the keyboard before. */
    SafePointer<juce::Component> former;

    const std::unique_ptr<Surroundings> surroundings;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ValueField)
};

} // namespace luna
