#pragma once

#include "dsp/MultiModeClipper.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <atomic>

/** One row of the section table: the name shown to the user, the suffix of the section's parameter IDs, and
    the clipper, which the processor owns. */
struct Section
{
    juce::String displayName;
    juce::String id;
    MultiModeClipper* clipper = nullptr;
};

inline constexpr auto numSections = 9;

/** Handles to the parameter values that are read while audio runs, looked up once. Any thread may load them.
    */
struct SectionValues
{
    std::atomic<float>* threshold = nullptr;
    std::atomic<float>* gain = nullptr;
    std::atomic<float>* enable = nullptr;
    std::atomic<float>* mute = nullptr;
    std::atomic<float>* link = nullptr;
};

struct GlobalValues
{
    std::atomic<float>* enable = nullptr;
    std::atomic<float>* crossoverLow = nullptr;
    std::atomic<float>* crossoverHigh = nullptr;
    std::atomic<float>* soloBand = nullptr;
    std::atomic<float>* inGain = nullptr;
    std::atomic<float>* oversampling = nullptr;
};

/** What a change of a parameter acts on beyond the levels of all sections. */
struct ParameterAddress
{
    enum class Kind
    {
        other,
        shape,
        mode,
        enable,
        crossover,
        layout,
        oversampling
    };

    Kind kind = Kind::other;

    /** The section's row, for the kinds that belong to one. */
    int section = -1;
};
