#include "JuceOversamplers.h"

#include "common/Sections.h"

JuceOversamplers makeJuceOversamplers (int numChannels)
{
    using Oversampler = juce::dsp::Oversampling<float>;

    JuceOversamplers bank;

    // With maximum quality the stages have these settings (transition width and stopband, up and down):
    // 0.05, -90 dB, 0.06, -75 dB; then 0.10 and 0.12 throughout with -80/-65, -70/-55 and -60/-45 dB.
    for (size_t exponent = 0; exponent < Oversampling::names.size(); ++exponent)
        bank.add (std::make_unique<Oversampler> (static_cast<size_t> (numChannels), exponent,
                                                 Oversampler::filterHalfBandFIREquiripple, true, true));

    return bank;
}
