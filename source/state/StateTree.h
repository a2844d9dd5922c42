#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include <utility>
#include <vector>

/** What the host's state and preset files have in common: the tree of the parameters and the editor's view
    modes. */
namespace tessarin::StateTree
{
inline const juce::Identifier version { "version" };
inline const juce::Identifier presetPath { "preset_path" };

/** The child that holds the view mode of each section's graph. */
inline const juce::Identifier graphModes { "graph_modes" };

/** The root's type: the product's name in lower case without blanks, tabs and line ends. */
[[nodiscard]] juce::String makeTag (const juce::String& productName);

/** Makes the root's tag lower case, as states from anywhere are read, and gives the framework's first product
    its present name. */
void normaliseTag (juce::XmlElement& root);

/** Readies a tree from outside for `replaceState`: parameter entries whose value is no finite number are
    dropped (it would become a wild index), and an empty "graph_modes" is added where there is none. */
void sanitise (juce::ValueTree& root);

/** The value of a parameter that a tree does not name. */
enum class MissingValue
{
    present,
    defaultValue
};

/** Gives each parameter that the tree does not name an entry of its own. `replaceState` would set it to its
    default, and, where it stands there already, leave an entry without a value in the tree. */
void addMissingParameters (juce::ValueTree& root, const juce::AudioProcessorValueTreeState& parameters,
                           MissingValue missingValue);

/** What a tree sets, from 0 to 1, in the order of its entries. */
[[nodiscard]] std::vector<std::pair<const juce::RangedAudioParameter*, float>>
getValues (const juce::ValueTree& root, const juce::AudioProcessorValueTreeState& parameters);

/** The parameters alone, with their present values, and the root's version and path: for a tree that came with so
    much else that nothing would read it again. */
[[nodiscard]] juce::ValueTree makeBareState (const juce::ValueTree& root,
                                             const juce::AudioProcessorValueTreeState& parameters);

} // namespace tessarin::StateTree
