#include "ValueField.h"

#include "common/ColourIds.h"
#include "common/FontHeights.h"

#include <juce_audio_processors/juce_audio_processors.h>

namespace luna
{

/** Closes the field at a click elsewhere, and when its control goes away from under it. */
class ValueField::Surroundings final : private juce::MouseListener, private juce::ComponentMovementWatcher
{
public:
    explicit Surroundings (ValueField& owner) : ComponentMovementWatcher (&owner.control), field (owner) {}

    ~Surroundings() override { watch (nullptr); }

    /** Null for none. */
    void watch (juce::Component* newWindow)
    {
        if (window != nullptr)
            window->removeMouseListener (this);

        window = newWindow;

        if (window != nullptr)
            window->addMouseListener (this, true);
    }

private:
    void mouseDown (const juce::MouseEvent& event) override
    {
        if (event.eventComponent != &field && ! field.isParentOf (event.eventComponent))
            field.close();
    }

    /** Which may turn the control under the field. */
    void mouseWheelMove (const juce::MouseEvent& event, const juce::MouseWheelDetails&) override
    {
        mouseDown (event);
    }

    using ComponentMovementWatcher::componentMovedOrResized;
    using ComponentMovementWatcher::componentVisibilityChanged;

    void componentMovedOrResized (bool, bool) override { field.close(); }

    void componentPeerChanged() override { field.close(); }

    void componentVisibilityChanged() override { field.close(); }

    ValueField& field;
    juce::Component::SafePointer<juce::Component> window;
};

ValueField::ValueField (juce::Component& c, Taker t)
    : control (c), taker (std::move (t)), surroundings (std::make_unique<Surroundings> (*this))
{
    setTitle ("Value");
    setFont (juce::FontOptions (FontHeights::control));
    setJustification (juce::Justification::centred);
    setIndents (2, 0);
    setBorder ({});
    setPopupMenuEnabled (false);

    onReturnKey = [this] { take(); };
    onEscapeKey = [this] { close(); };
    onTextChange = [this]
    {
        if (std::exchange (refused, false))
            repaint();
    };
}

ValueField::~ValueField() = default;

void ValueField::open (juce::Rectangle<int> area, const juce::String& value, const juce::String& typed)
{
    juce::Component* editor = control.findParentComponentOfClass<juce::AudioProcessorEditor>();
    auto* window = editor != nullptr ? editor : control.getTopLevelComponent();

    refused = false;
    former = getCurrentlyFocusedComponent();
    window->addAndMakeVisible (*this);
    setBounds (window->getLocalArea (&control, area).constrainedWithin (window->getLocalBounds()));

    // The colours are the window's only now.
    lookAndFeelChanged();
    applyFontToAllText (getFont());
    applyColourToAllText (findColour (textColourId));
    setText (typed.isEmpty() ? value : typed, juce::dontSendNotification);
    grabKeyboardFocus();

    if (typed.isEmpty())
        selectAll();
    else
        moveCaretToEnd();

    surroundings->watch (window);
}

void ValueField::take()
{
    if (! control.isEnabled() || taker (getText()))
    {
        close();
        return;
    }

    refused = true;
    selectAll();
    repaint();
}

void ValueField::close()
{
    auto* window = getParentComponent();

    if (window == nullptr || std::exchange (isClosing, true))
        return;

    surroundings->watch (nullptr);

    if (hasKeyboardFocus (true) && former != nullptr && former->isShowing())
        former->grabKeyboardFocus();

    window->removeChildComponent (this);
    isClosing = false;
}

/** Another window may only have the focus for a while, and many window managers take it away at every click. */
void ValueField::focusLost (FocusChangeType cause)
{
    TextEditor::focusLost (cause);

    if (getCurrentlyFocusedComponent() != nullptr)
        close();
}

void ValueField::paintOverChildren (juce::Graphics& g)
{
    TextEditor::paintOverChildren (g);

    if (! refused)
        return;

    g.setColour (findColour (luna::ColourIds::warningColourId));
    g.drawRoundedRectangle (getLocalBounds().toFloat().reduced (1.0f), 3.0f, 2.0f);
}

} // namespace luna
