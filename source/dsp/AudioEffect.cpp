#include "AudioEffect.h"

namespace luna
{

void AudioEffect::prepare (const juce::dsp::ProcessSpec& spec)
{
    prepareEffect (spec);
    raiseChangeCount();
}

} // namespace luna
