#include "MultiModeClipperEditor.h"

#include "common/FontHeights.h"
#include "common/ParameterIds.h"
#include "common/Rounding.h"
#include "state/StateTree.h"
#include "widgets/PixelPicture.h"

#include <LunaBinary.h>

namespace
{
juce::Identifier getGraphModeOf (const juce::String& sectionId)
{
    return "clipper_" + sectionId;
}
} // namespace

MultiModeClipperEditor::MultiModeClipperEditor (MultiModeClipper* clipperToEdit, juce::String id,
                                                juce::AudioProcessorValueTreeState& stateToUse,
                                                juce::CriticalSection& stateLockToUse)
    : thresholdSlider ("Threshold", ParameterIds::thresholdPrefix + id, stateToUse),
      shapeSlider ("Shape", ParameterIds::shapePrefix + id, stateToUse),
      makeupSlider ("Makeup", ParameterIds::gainPrefix + id, stateToUse),
      enableButton (LunaBinary::poweroff_svg, static_cast<size_t> (LunaBinary::poweroff_svgSize)),
      linkButton (LunaBinary::link_svg, static_cast<size_t> (LunaBinary::link_svgSize)),
      clipper (clipperToEdit),
      currentSaturator (clipper->current),
      sectionId (std::move (id)),
      state (&stateToUse),
      stateLock (stateLockToUse),
      modeMenu (modeBox, state->getParameter (ParameterIds::modePrefix + sectionId)),
      enableMenu (enableButton, state->getParameter (ParameterIds::enablePrefix + sectionId)),
      linkMenu (linkButton, state->getParameter (ParameterIds::linkPrefix + sectionId))
{
    setUpGraph();
    addChildren();
    setUpModeBox();
    setUpButton (enableButton, enableAttachment, ParameterIds::enablePrefix + sectionId);
    setUpButton (linkButton, linkAttachment, ParameterIds::linkPrefix + sectionId);
    setTooltips();

    // On whichever thread changes the mode. The section forgets it before the panel dies, and waits for a call that
    // runs.
    clipper->setModeChangeHandler ([this] { modeUpdate.post(); });

    // Before the handler was set, a change told nobody.
    currentSaturator = clipper->current;

    updateShape();
    updateEnablement();
}

MultiModeClipperEditor::~MultiModeClipperEditor()
{
    clipper->setModeChangeHandler ({});
}

void MultiModeClipperEditor::setUpGraph()
{
    graph.saturator = currentSaturator;
    graph.onViewModeChange = [this] (auto mode) { saveViewMode (mode); };
    graph.menuEnabled = true;
    graph.startTimer (33);
    loadViewMode();
}

void MultiModeClipperEditor::addChildren()
{
    for (auto* child :
         std::initializer_list<juce::Component*> { &graph, &thresholdSlider, &shapeSlider, &makeupSlider,
                                                   &modeBox, &modeLabel, &enableButton, &linkButton })
        addAndMakeVisible (*child);

    for (auto* buffered : std::initializer_list<juce::Component*> { &modeLabel, &enableButton, &linkButton })
        luna::bufferToPixels (*buffered);

    modeLabel.setText ("Mode", juce::dontSendNotification);
    modeLabel.setFont (juce::FontOptions (luna::FontHeights::control));

    modeBox.setTitle ("Mode");

    // Or the cursor keys would go on choosing after the mouse has.
    modeBox.setMouseClickGrabsKeyboardFocus (false);
    enableButton.setTitle ("Enable");
    linkButton.setTitle ("Link");
}

void MultiModeClipperEditor::setTooltips()
{
    graph.background.setTooltip (
        "Clipper Shape: Preview the shape and current level. Right click for more options");
    thresholdSlider.setTooltip ("Threshold: Values above this will be clipped");
    shapeSlider.setTooltip ("Shape: The shape of the clipper");
    makeupSlider.setTooltip ("Makeup: Gain to apply to the output of the clipper");
    modeBox.setTooltip ("Mode: Set the clipper mode");
    modeLabel.setTooltip ("Clipper Mode: Select a clipper mode");
    enableButton.setTooltip ("Enable: Enable the clipper section");
    linkButton.setTooltip ("Link: Boost makeup gain to compensation for the threshold");
}

void MultiModeClipperEditor::setUpModeBox()
{
    const auto parameterId = ParameterIds::modePrefix + sectionId;

    if (auto* parameter = state->getParameter (parameterId))
        modeAttachment =
            std::make_unique<juce::ComboBoxParameterAttachment> (*parameter, modeBox, state->undoManager);

    juce::PopupMenu menu;

    for (const auto& group : modeGroups)
    {
        if (group.id != modeGroups.front().id)
            menu.addSeparator();

        menu.addSectionHeader (group.title);

        for (const auto& mode : clipper->modes)
            if (mode.group == group.id)
                menu.addItem (mode.id + 1, mode.name);
    }

    *modeBox.getRootMenu() = menu;

    // The attachment came before the items, and found none to select. A message would come back later as the user's
    // choice, over whatever the host has chosen in between.
    modeBox.setSelectedId (roundToChoice (state->getRawParameterValue (parameterId)->load()) + 1,
                           juce::dontSendNotification);
}

void MultiModeClipperEditor::setUpButton (luna::IconButton& button,
                                          std::unique_ptr<juce::ButtonParameterAttachment>& attachment,
                                          const juce::String& parameterId)
{
    if (auto* parameter = state->getParameter (parameterId))
    {
        attachment =
            std::make_unique<juce::ButtonParameterAttachment> (*parameter, button, state->undoManager);

        // The button clicks only if it changes, which it can have done before the section did.
        enablementWatches.push_back (
            std::make_unique<juce::ParameterAttachment> (*parameter, [this] (float) { updateEnablement(); }));
    }

    button.setToggleState (isOn (parameterId), juce::dontSendNotification);
    button.setClickingTogglesState (true);
    button.onClick = [this] { updateEnablement(); };
}

bool MultiModeClipperEditor::isOn (const juce::String& parameterId) const
{
    return roundToSwitch (state->getRawParameterValue (parameterId)->load());
}

void MultiModeClipperEditor::loadViewMode()
{
    const juce::ScopedLock scope (stateLock);
    const int mode = state->state.getChildWithName (tessarin::StateTree::graphModes)
                         .getProperty (getGraphModeOf (sectionId), 0);

    graph.setViewMode (mode == 1 ? luna::SaturatorGraph::ViewMode::amplitude
                                 : luna::SaturatorGraph::ViewMode::decibels);
}

void MultiModeClipperEditor::saveViewMode (luna::SaturatorGraph::ViewMode mode)
{
    const juce::ScopedLock scope (stateLock);
    auto modes = state->state.getChildWithName (tessarin::StateTree::graphModes);

    if (modes.isValid())
        modes.setProperty (getGraphModeOf (sectionId), static_cast<int> (mode), nullptr);
}

void MultiModeClipperEditor::modeChanged()
{
    currentSaturator = clipper->current;
    updateShape();
}

juce::String MultiModeClipperEditor::getShapeLabel() const
{
    const auto index = clipper->currentModeId;
    return juce::isPositiveAndBelow (index, clipper->modes.size()) ? clipper->modes[index].shapeLabel
                                                                   : juce::String ("Shape");
}

void MultiModeClipperEditor::updateShape()
{
    graph.saturator = currentSaturator;

    shapeSlider.nameLabel.setText (getShapeLabel(), juce::dontSendNotification);
    shapeSlider.nameLabel.repaint();
    shapeSlider.slider.setTitle (getShapeLabel());

    const auto* current = clipper->current;
    const auto hasShape = current != &clipper->hardClipper && current != &clipper->dough;

    // To the window, and not to the panel's first button, which the next space bar would press.
    if (! hasShape && shapeSlider.hasKeyboardFocus (true) && getParentComponent() != nullptr)
        getParentComponent()->grabKeyboardFocus();

    shapeSlider.setVisible (hasShape);
}

void MultiModeClipperEditor::updateEnablement()
{
    // The attachment has passed the click on, so the section tells the truth here.
    const auto isEnabledNow = clipper->enabled.load();

    for (auto* child : std::initializer_list<juce::Component*> { &thresholdSlider, &shapeSlider, &graph,
                                                                 &modeBox, &modeLabel })
        child->setEnabled (isEnabledNow);

    makeupSlider.setEnabled (isEnabledNow && ! isOn (ParameterIds::linkPrefix + sectionId));
}

void MultiModeClipperEditor::lookAndFeelChanged()
{
    Panel::lookAndFeelChanged();

    for (auto* child : getChildren())
        copyAllExplicitColoursTo (*child);
}
