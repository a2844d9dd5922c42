// Each curve's block form beside the same curve written plainly. A pair that disagrees ends the program,
// since their times would mean nothing.

#include "dsp/MultiModeClipper.h"
#include "plain/Curves.h"
#include "Rows.h"

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>

namespace bench
{

namespace
{
constexpr auto thresholdDb = -6.0f;

using Context = juce::dsp::ProcessContextReplacing<float>;

template <typename Reference>
void applyPlainly (Reference& reference, juce::AudioBuffer<float>& buffer)
{
    for (auto channel = 0; channel < buffer.getNumChannels(); ++channel)
    {
        auto* samples = buffer.getWritePointer (channel);

        for (auto i = 0; i < buffer.getNumSamples(); ++i)
            samples[i] = reference (samples[i]);
    }
}

/** `control` is the value of the curve's second parameter. */
template <typename Curve>
std::shared_ptr<Curve> makeCurve (float control)
{
    auto curve = std::make_shared<Curve>();
    curve->prepare ({ hostRate, static_cast<juce::uint32> (defaultBlockSize), 2 });
    curve->setParameter (thresholdDb, 0);
    curve->setParameter (control, 1);
    return curve;
}

template <typename Curve, typename Reference>
void throwIfDifferent (const char* name, float control, Reference reference)
{
    constexpr auto tolerance = 2.0e-6f;

    auto ours = signal();
    auto plain = signal();
    juce::dsp::AudioBlock<float> block (ours);
    makeCurve<Curve> (control)->processBlock (Context (block));
    applyPlainly (reference, plain);

    for (auto channel = 0; channel < ours.getNumChannels(); ++channel)
    {
        for (auto i = 0; i < ours.getNumSamples(); ++i)
        {
            const auto difference = std::abs (ours.getSample (channel, i) - plain.getSample (channel, i));

            if (! (difference <= tolerance))
                throw std::runtime_error (std::string ("curve ") + name + " and its plain reference differ");
        }
    }
}

template <typename Curve, typename Reference>
void addPair (const char* name, float control, Reference reference)
{
    throwIfDifferent<Curve> (name, control, reference);

    addRow (std::string ("curve/") + name,
            [control]
            {
        return [curve = makeCurve<Curve> (control)] (juce::AudioBuffer<float>& buffer)
        {
            juce::dsp::AudioBlock<float> block (buffer);
            curve->processBlock (Context (block));
            };
    });

    addRow (std::string ("curve/") + name + "/plain",
            [reference] {
        return [reference] (juce::AudioBuffer<float>& buffer) mutable { applyPlainly (reference, buffer); };
    });
}
} // namespace

void addCurveRows()
{
    constexpr auto knee = 4.5f;
    constexpr auto half = 0.5f;

    addPair<luna::HardClipper> ("Hard", 0.0f, reference::Hard { thresholdDb });
    addPair<luna::SoftClipper> ("SoftI", knee, reference::SoftOne { thresholdDb, knee });
    addPair<luna::Dough> ("SoftII", 0.0f, reference::SoftTwo { thresholdDb });
    addPair<luna::InflatorClipper> ("Pressure", half, reference::Pressure { thresholdDb, half });
    addPair<luna::Boost> ("Boost", half, reference::Boost { thresholdDb, half });
    addPair<luna::Foldback> ("Foldback", knee, reference::Foldback { thresholdDb, knee });
    addPair<luna::TanhClipper> ("Tanh", half, reference::Tanh { thresholdDb, half });
    addPair<luna::SinClipper> ("Sine", half, reference::Sine { thresholdDb, half });
}

} // namespace bench
