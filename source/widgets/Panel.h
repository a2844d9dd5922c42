#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace luna
{

/** A box with an optional title row; the base of every section of the editor. The component's name is the
    title, and a panel without a name has no title row. Message thread. */
class Panel : public juce::Component, public juce::ComponentListener
{
public:
    class LookAndFeelMethods
    {
    public:
        virtual ~LookAndFeelMethods() = default;
        virtual void drawPanelBackground (juce::Graphics&, Panel&) = 0;
    };

    Panel();
    ~Panel() override;

    /** The area in which a derived class lays out its children. */
    [[nodiscard]] juce::Rectangle<int> getContentBounds() const;

    /** The layout hook, called at the end of `resized`. */
    virtual void layoutContent() {}

    virtual void updateTitle();

    void mouseDown (const juce::MouseEvent&) override;
    void paint (juce::Graphics&) override;
    void resized() override;

    void enablementChanged() override { repaint(); }

    void lookAndFeelChanged() override;

    void componentNameChanged (juce::Component&) override { updateTitle(); }

    /** Runs after a click in the title area, which flips `collapsed` of every panel. */
    std::function<void()> onCollapseToggled;

    juce::Label titleLabel;
    int padding = 20;
    int verticalPadding = 10;
    int titleLineY = 42;
    bool collapsed = false;

    /** Shows the arrow, and hides the title line while collapsed. */
    bool collapsible = false;

private:
    void paintArrow (juce::Graphics&);

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (Panel)
};

} // namespace luna
