#include "Loudness.h"

#include "Failure.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr auto piecesPerSecond = 100;
constexpr auto nothing = -std::numeric_limits<double>::infinity();

double toDecibels (double amplitude)
{
    return amplitude > 0.0 ? 20.0 * std::log10 (amplitude) : nothing;
}

/** What the library's function says, or nothing. */
template <typename Function>
double ask (Function function, ebur128_state* state)
{
    auto value = nothing;
    return function (state, &value) == EBUR128_SUCCESS && std::isfinite (value) ? value : nothing;
}
} // namespace

Loudness::Loudness (double rate, int numChannels, Extent e, double limit)
    : state (ebur128_init (static_cast<unsigned int> (numChannels), static_cast<unsigned long> (rate),
                           e == Extent::integrated ? EBUR128_MODE_I
                                                   : EBUR128_MODE_I | EBUR128_MODE_LRA | EBUR128_MODE_S
                                                         | EBUR128_MODE_TRUE_PEAK)),
      extent (e),
      peakLimit (limit),
      channels (numChannels),
      piece (juce::roundToInt (rate / piecesPerSecond))
{
    if (state == nullptr)
        throw Failure ("loudness cannot be measured at " + juce::String (rate) + " Hz");
}

void Loudness::add (const juce::AudioBuffer<float>& block, int frames)
{
    for (auto first = 0; first < frames;)
    {
        const auto length = juce::jmin (frames - first, piece - inPiece);
        interleaved.clear();

        for (auto frame = first; frame < first + length; ++frame)
            for (auto channel = 0; channel < channels; ++channel)
            {
                const auto sample = block.getSample (channel, frame);
                interleaved.push_back (std::isfinite (sample) ? sample : 0.0f);
            }

        if (ebur128_add_frames_float (state.get(), interleaved.data(), static_cast<size_t> (length))
            != EBUR128_SUCCESS)
            throw Failure ("loudness cannot be measured: no memory");

        if (extent == Extent::whole)
            notePeak();

        first += length;
        inPiece += length;

        if (inPiece == piece)
            endPiece();
    }
}

void Loudness::endPiece()
{
    inPiece = 0;
    ++pieces;

    if (extent == Extent::integrated)
        return;

    // Ten times a second, as the standard asks of a meter, from the first whole window on.
    if (pieces % 10 == 0 && pieces >= 3 * piecesPerSecond)
        maximumShortTerm = std::max (maximumShortTerm, ask (ebur128_loudness_shortterm, state.get()));

    if (pieces % piecesPerSecond == 0)
        shortTerm.push_back (ask (ebur128_loudness_shortterm, state.get()));
}

/** Of what was added last. */
void Loudness::notePeak()
{
    auto peak = 0.0;

    for (auto channel = 0; channel < channels; ++channel)
    {
        auto value = 0.0;
        ebur128_prev_true_peak (state.get(), static_cast<unsigned int> (channel), &value);
        peak = std::max (peak, value);
    }

    const auto level = toDecibels (peak);
    if (level <= peakLimit)
        return;

    constexpr auto length = 1.0 / piecesPerSecond;
    const auto start = static_cast<double> (pieces) * length;

    if (overs.empty() || overs.back().seconds + overs.back().length < start - length / 2.0)
        overs.push_back ({ start, 0.0, level });

    auto& over = overs.back();
    over.length = start + length - over.seconds;
    over.level = std::max (over.level, level);
}

double Loudness::getIntegrated() const
{
    return ask (ebur128_loudness_global, state.get());
}

double Loudness::getRange() const
{
    return ask (ebur128_loudness_range, state.get());
}

double Loudness::getMaximumShortTerm() const
{
    return maximumShortTerm;
}

double Loudness::getTruePeak() const
{
    auto peak = 0.0;

    for (auto channel = 0; channel < channels; ++channel)
    {
        auto value = 0.0;
        ebur128_true_peak (state.get(), static_cast<unsigned int> (channel), &value);
        peak = std::max (peak, value);
    }

    return toDecibels (peak);
}

double Loudness::getIntegrated (const std::vector<Loudness>& streams)
{
    std::vector<ebur128_state*> states;
    for (const auto& stream : streams)
        states.push_back (stream.state.get());

    auto value = nothing;
    return ebur128_loudness_global_multiple (states.data(), states.size(), &value) == EBUR128_SUCCESS
                   && std::isfinite (value)
               ? value
               : nothing;
}

juce::String levelText (double level, int decimals)
{
    if (! std::isfinite (level))
        return "-";

    const auto text = juce::String (level, decimals);
    return text.containsAnyOf ("123456789") ? text : text.trimCharactersAtStart ("-");
}
