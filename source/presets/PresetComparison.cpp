#include "PresetComparison.h"

#include "state/StateTree.h"

#include <algorithm>
#include <cmath>

namespace tessarin
{

PresetComparison::PresetComparison (const PresetManager& managerToUse,
                                    const juce::AudioProcessorValueTreeState& parametersToUse)
    : manager (managerToUse), parameters (parametersToUse)
{
}

void PresetComparison::readPreset()
{
    values = StateTree::getValues (manager.readCurrentPreset(), parameters);
}

bool PresetComparison::isChanged() const
{
    const auto isElsewhere = [] (const auto& entry)
    {
        // Less than any control or host moves by, and more than the rounding of a value that goes to a host and back.
        constexpr auto tolerance = 1.0e-5f;
        return std::abs (entry.first->getValue() - entry.second) > tolerance;
    };

    return values.empty() || std::any_of (values.begin(), values.end(), isElsewhere);
}

} // namespace tessarin
