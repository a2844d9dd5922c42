#include "FactoryBank.h"

#include "common/Sections.h"

#include <initializer_list>

namespace factoryBank
{

namespace
{
// Values of the choice parameters.
enum Mode
{
    hard,
    softI,
    softII,
    pressure,
    boost
};

enum Factor
{
    x2 = 1,
    x4,
    x8,
    x16
};

using Layout::leftRight;
using Layout::midSide;

constexpr auto low = sectionTable[SectionRow::lowBand].id;
constexpr auto middle = sectionTable[SectionRow::midBand].id;
constexpr auto high = sectionTable[SectionRow::highBand].id;
constexpr auto mid = sectionTable[SectionRow::midChannel].id;
constexpr auto side = sectionTable[SectionRow::sideChannel].id;
constexpr auto left = sectionTable[SectionRow::leftChannel].id;
constexpr auto right = sectionTable[SectionRow::rightChannel].id;
constexpr auto single = sectionTable[SectionRow::single].id;
constexpr auto post = sectionTable[SectionRow::post].id;

/** A few settings that belong together, and the section that they put to work, if any. */
struct Part
{
    Settings settings;
    std::string section = {};
};

/** Threshold and makeup in dB, shape from 0 to 1. */
Part clip (const std::string& section, Mode mode, double threshold, double shape = 0.0, double makeup = 0.0)
{
    return { { { "mode_" + section, static_cast<double> (mode) },
               { "threshold_" + section, threshold },
               { "shape_" + section, shape },
               { "gain_" + section, makeup } },
             section };
}

/** The makeup follows the threshold. */
Part linked (const std::string& section, Mode mode, double threshold, double shape = 0.0)
{
    auto part = clip (section, mode, threshold, shape);
    part.settings.back() = { "link_" + section, 1.0 };
    return part;
}

Part off (const std::string& section)
{
    return { { { "enable_" + section, 0.0 } } };
}

Part muted (const std::string& section)
{
    return { { { "mute_" + section, 1.0 } } };
}

/** In Hz. */
Part bands (double crossoverLow, double crossoverHigh)
{
    return { { { "layout", Layout::multiBand },
               { "crossover_low", crossoverLow },
               { "crossover_high", crossoverHigh } } };
}

Part layout (Layout::Value value)
{
    return { { { "layout", static_cast<double> (value) } } };
}

Part oversampled (Factor factor)
{
    return { { { "oversampling", static_cast<double> (factor) } } };
}

/** Whole dB: the input gain works in no finer steps. */
Part drive (int decibels)
{
    return { { { "in_gain", static_cast<double> (decibels) } } };
}

Entry preset (const char* name, const char* categories, const char* description,
              std::initializer_list<Part> parts)
{
    Entry entry { name, categories, description, {}, {} };

    for (const auto& part : parts)
    {
        entry.settings.insert (entry.settings.end(), part.settings.begin(), part.settings.end());

        if (! part.section.empty())
            entry.sections.push_back (part.section);
    }

    return entry;
}

Folder makeDrums()
{
    return {
        "Drums",
        "Kits, loops and single drums with peaks around -4 dBFS; turn the input gain until the clipper "
        "works.",
        { preset ("Drum Bus Trim", "Clean,Drums,Peaks",
                  "Cuts the highest stick and beater peaks of a whole kit and leaves everything else alone.",
                  { oversampled (x4), clip (single, hard, -3.5) }),
          preset ("Drum Bus Loud", "Drums,Loud,Punchy",
                  "Drives the kit into a rounded clip and gives the level back, for drums at the front of "
                  "the mix.",
                  { oversampled (x8), drive (4), linked (single, softI, -5, 0.35) }),
          preset ("Kick Weight", "Bands,Drums,Punchy",
                  "Rounds the bottom of a kick so that it stays full, and keeps its beater click from "
                  "jumping out.",
                  { oversampled (x4), bands (110, 3000), clip (low, softI, -11, 0.6, 1.5),
                    clip (middle, softI, -9, 0.3), clip (high, hard, -15) }),
          preset ("Snare Crack", "Drums,Loud,Punchy",
                  "Lifts the body of a snare towards its own peak, so that the crack sounds bigger at the "
                  "same level.",
                  { oversampled (x8), clip (single, boost, -4, 0.45) }),
          preset (
              "Hat And Cymbal Spikes", "Bands,Bright,Clean,Drums,Peaks",
              "Catches spikes of hats and cymbals alone; lows and mids pass untouched.",
              { oversampled (x8), bands (200, 5000), off (low), off (middle), clip (high, softI, -16, 0.4) }),
          preset ("Overheads Tamed", "Drums,Peaks,Stereo",
                  "Holds the snare in the middle of the overheads and keeps wide cymbals from splashing.",
                  { oversampled (x4), layout (midSide), clip (mid, hard, -6), clip (side, softI, -12, 0.5) }),
          preset ("Room Crush", "Dirty,Drums,Loud",
                  "Pushes room microphones hard into a saturating curve for long, dense drum ambience.",
                  { oversampled (x4), drive (10), clip (single, softII, -6), clip (post, hard, -7, 0, 1) }),
          preset ("Programmed Kit Slam", "Drums,Loud,Punchy",
                  "Two clips in a row, the first hard, the second round, for electronic kits that must hit "
                  "the limit.",
                  { oversampled (x8), drive (5), linked (single, hard, -4), linked (post, softI, -2, 0.3) }) }
    };
}

Folder makeBass()
{
    return {
        "Bass",
        "Electric and synthetic bass with peaks around -6 dBFS, on a track or a group.",
        { preset ("Bass Peak Guard", "Bass,Clean,Peaks",
                  "Takes the loudest notes and slaps down softly before the compressor hears them.",
                  { oversampled (x4), clip (single, softI, -6, 0.35) }),
          preset (
              "Direct Box Warmth", "Bass,Warm",
              "Adds rounded harmonics to a dry direct signal, so that the line is heard on small speakers.",
              { oversampled (x4), drive (5), clip (single, softII, -3) }),
          preset ("Growl On Top", "Bands,Bass,Dirty",
                  "Leaves the fundamental clean and grinds everything above it.",
                  { oversampled (x8), drive (3), bands (140, 2500), off (low), clip (middle, hard, -15, 0, 4),
                    clip (high, softI, -18, 0.3, 2) }),
          preset ("Steady Low End", "Bands,Bass,Warm",
                  "Holds the lowest octave at one level with a gentle clip; the strings above it stay open.",
                  { oversampled (x2), bands (100, 2000), clip (low, softI, -13.5, 0.6), off (middle),
                    off (high) }),
          preset ("Slap And Pop", "Bands,Bass,Peaks",
                  "Tames pops and fret noise in the upper bands without dulling the notes.",
                  { oversampled (x8), bands (180, 2200), off (low), clip (middle, softI, -10, 0.5),
                    clip (high, hard, -16) }),
          preset ("Bass Wall", "Bass,Loud,Warm",
                  "Clips the peaks flat and then lifts all that lies below them for a bass that never moves.",
                  { oversampled (x8), drive (3), clip (single, hard, -6, 0, 5),
                    clip (post, pressure, -1, 0.6) }) }
    };
}

Folder makeVocals()
{
    return { "Vocals",
             "Lead and backing vocals with peaks around -6 dBFS, before or after the compressor.",
             { preset ("Vocal Peak Catch", "Clean,Peaks,Vocals",
                       "Rounds the odd shout or consonant by a few decibels, out of the compressor's way.",
                       { oversampled (x8), clip (single, softI, -5, 0.45) }),
               preset ("Vocal Forward", "Loud,Vocals",
                       "Lifts quiet words towards the loud ones and keeps the peaks where they were.",
                       { oversampled (x8), clip (single, boost, -5, 0.7, 1) }),
               preset ("Plosive Guard", "Bands,Clean,Peaks,Vocals",
                       "Stops pops below the voice from pushing the rest of the chain.",
                       { oversampled (x2), bands (130, 4000), clip (low, softI, -11.5, 0.4), off (middle),
                         off (high) }),
               preset ("Sibilance Cap", "Bands,Clean,Peaks,Vocals",
                       "Puts a soft lid on the harshest esses and leaves the rest of the voice as it is.",
                       { oversampled (x16), bands (200, 5500), off (low), off (middle),
                         clip (high, softI, -18, 0.6) }),
               preset (
                   "Vocal Grit", "Dirty,Vocals,Warm",
                   "Drives the voice into a saturating curve for a worn edge that still follows the words.",
                   { oversampled (x8), drive (7), clip (single, softII, -5) }),
               preset ("Backing Stack", "Stereo,Vocals,Warm",
                       "Levels a stack of doubles: firm in the middle, soft at the sides.",
                       { oversampled (x4), layout (midSide), clip (mid, softI, -7, 0.5),
                         clip (side, softI, -12, 0.7, 1.5) }) } };
}

Folder makeGuitars()
{
    return {
        "Guitars",
        "Acoustic and electric guitars with peaks around -6 dBFS.",
        { preset ("Strum Leveller", "Guitars,Peaks,Warm",
                  "Brings loud strokes down with a wide knee and makes up the level.",
                  { oversampled (x4), linked (single, softI, -6, 0.6) }),
          preset ("Pick Attack Tamer", "Bands,Clean,Guitars,Peaks",
                  "Softens the click of the pick in the top band and the bark below it; the body stays free.",
                  { oversampled (x8), bands (180, 3200), off (low), clip (middle, softI, -8, 0.4),
                    clip (high, softI, -16, 0.5) }),
          preset ("Edge Of Breakup", "Guitars,Warm",
                  "A little too much level into a round curve, like an amplifier just before it breaks up.",
                  { oversampled (x8), drive (6), clip (single, softII, -3.5) }),
          preset (
              "Crunch Pedal", "Dirty,Guitars,Loud",
              "A stiff hard clip for riffs, with a rounded second stage that takes off the edge.",
              { oversampled (x16), drive (10), clip (single, hard, -9, 0, 6), clip (post, softI, -4, 0.5) }),
          preset ("Double Track Tight", "Guitars,Peaks,Stereo",
                  "Clips each side of a double-tracked part on its own, so that neither take pulls the other "
                  "down.",
                  { oversampled (x4), layout (leftRight), clip (left, softI, -7, 0.3),
                    clip (right, softI, -7, 0.3) }),
          preset ("Lead Sustain", "Guitars,Loud",
                  "Bends soft notes up towards the peaks for solos that sing on.",
                  { oversampled (x8), drive (5), clip (single, boost, -3, 0.8) }) }
    };
}

Folder makeSynths()
{
    return {
        "Synths",
        "Leads, pads, keys and sequences with peaks around -6 dBFS.",
        { preset ("Saw Polish", "Clean,Synths,Warm",
                  "Rounds stacked oscillators that beat against each other, at the finest oversampling.",
                  { oversampled (x16), drive (3), clip (single, softII, -3) }),
          preset ("Pluck Snap", "Loud,Punchy,Synths",
                  "Cuts the front of plucks and stabs flat and turns the rest up by as much.",
                  { oversampled (x8), linked (single, hard, -7) }),
          preset (
              "Pad Thickener", "Synths,Warm",
              "Lifts everything below the peaks of a pad and keeps it dense without touching its tone much.",
              { oversampled (x4), clip (single, pressure, -4.5, 0.55) }),
          preset ("Wide Lead", "Bright,Stereo,Synths",
                  "Brings the side signal of a lead up to one level while the middle is only trimmed.",
                  { oversampled (x8), layout (midSide), clip (mid, softI, -7, 0.3),
                    clip (side, boost, -12, 0.5, 2) }),
          preset ("Sequence Grit", "Bands,Dirty,Synths",
                  "A clean bottom, a round middle and a hard, bright top for sequences that cut through.",
                  { oversampled (x8), drive (3), bands (220, 2800), off (low),
                    clip (middle, softI, -12, 0.4, 4), clip (high, hard, -18, 0, 6), clip (post, hard, -4) }),
          preset (
              "Keys Peak Trim", "Clean,Peaks,Synths",
              "Cuts the hammer peaks of pianos and electric keys with no latency and no colour below them.",
              { clip (single, hard, -5) }) }
    };
}

Folder makeMixBus()
{
    return {
        "Mix Bus",
        "Groups and whole mixes with peaks around -5 dBFS, before mastering.",
        { preset ("Bus Peak Trim", "Clean,Mix,Peaks",
                  "Takes only the highest peaks off the mix, so that what follows works less.",
                  { oversampled (x8), clip (single, hard, -4) }),
          preset ("Bus Glue", "Mix,Warm",
                  "A wide knee over the whole mix that leans on loud moments and holds the parts together.",
                  { oversampled (x8), clip (single, softI, -5, 0.75, 1) }),
          preset ("Three Band Control", "Bands,Clean,Mix,Peaks",
                  "Each band has its own soft clip, so a kick does not clip the cymbals.",
                  { oversampled (x8), bands (120, 4000), clip (low, softI, -11, 0.4),
                    clip (middle, softI, -7, 0.4), clip (high, softI, -15, 0.4) }),
          preset ("Anchored Middle", "Mix,Peaks,Stereo",
                  "Clips the middle of the mix firmly and the sides gently; the width stays open.",
                  { oversampled (x8), layout (midSide), clip (mid, hard, -6), clip (side, softI, -11, 0.5) }),
          preset ("Bus Lift", "Loud,Mix",
                  "Flattens the peaks first and then raises the level below them, without letting them rise.",
                  { oversampled (x8), clip (single, hard, -4), clip (post, pressure, -4, 0.5, 1) }),
          preset ("Rough Mix Loud", "Loud,Mix",
                  "A quick listening copy: driven, clipped hard, rounded, and just below full scale.",
                  { oversampled (x4), drive (5), linked (single, hard, -3), clip (post, softI, -0.5, 0.3) }),
          preset ("Left Right Guard", "Clean,Mix,Peaks,Stereo",
                  "Cuts the peaks of each channel on its own for mixes with instruments far to one side.",
                  { oversampled (x8), layout (leftRight), clip (left, hard, -5), clip (right, hard, -5) }) }
    };
}

Folder makeMastering()
{
    return {
        "Mastering",
        "Finished mixes with peaks around -3 dBFS; every preset ends at a ceiling below full scale.",
        { preset ("Minus One Ceiling", "Clean,Master,Peaks",
                  "A transparent safety clip at -1 dBFS after everything else.",
                  { oversampled (x16), off (single), clip (post, hard, -1) }),
          preset ("Gentle Master", "Master,Warm",
                  "A soft knee shapes the loudest moments before the ceiling meets them.",
                  { oversampled (x16), clip (single, softI, -2.5, 0.5, 2), clip (post, hard, -1) }),
          preset (
              "Loud Master", "Loud,Master",
              "Two steps of clipping share the work for level without one audible culprit.",
              { oversampled (x16), drive (4), linked (single, softI, -2, 0.25), clip (post, hard, -0.5) }),
          preset ("Club Master", "Bands,Loud,Master,Punchy",
                  "Holds the bottom in place, keeps the middle open and the top firm, for large systems.",
                  { oversampled (x8), drive (2), bands (100, 4500), clip (low, softI, -8.5, 0.4, 1),
                    clip (middle, softI, -4, 0.4, 1), clip (high, softI, -13, 0.5),
                    clip (post, hard, -0.5) }),
          preset ("Wide Master", "Master,Stereo,Warm",
                  "Trims the middle and lifts the sides by as much as they can take.",
                  { oversampled (x16), layout (midSide), clip (mid, softI, -3.5, 0.3),
                    clip (side, boost, -10, 0.3, 1), clip (post, hard, -1) }),
          preset (
              "Dense Master", "Loud,Master,Warm",
              "Cuts the peaks and raises the level below them until the picture is full.",
              { oversampled (x8), drive (1), clip (single, hard, -2), clip (post, pressure, -2, 0.35, 1.5) }),
          preset ("Record Cutter Sides", "Master,Peaks,Stereo",
                  "Keeps strong side signals in bounds for cutting to a disc and leaves the middle alone.",
                  { oversampled (x8), layout (midSide), off (mid), clip (side, softI, -10, 0.4),
                    clip (post, softI, -1.5, 0.2) }) }
    };
}

Folder makeCreative()
{
    return {
        "Creative",
        "Damage on purpose, for anything with peaks around -6 dBFS.",
        { preset ("Torn Speaker", "Dirty,Effects,Glitch",
                  "Peaks that are too loud fall into silence, as if the cone had torn.",
                  { oversampled (x4), drive (9), clip (single, pressure, -7, 0.8, 4) }),
          preset ("Swallowed Attacks", "Effects,Glitch", "Attacks vanish and their tails remain.",
                  { oversampled (x4), clip (single, pressure, -12, 0, 6) }),
          preset ("Bad Contact", "Effects,Glitch,Stereo",
                  "Loud moments drop out on one side and then on the other, like a cable about to fail.",
                  { oversampled (x4), layout (leftRight), clip (left, pressure, -11, 0.3, 4),
                    clip (right, pressure, -13, 0.1, 6) }),
          preset ("Telephone", "Bands,Effects",
                  "Only the middle band is left, clipped like a cheap receiver.",
                  { oversampled (x4), drive (6), bands (400, 3000), off (low), muted (low), off (high),
                    muted (high), linked (middle, hard, -12), clip (post, softI, -6, 0.4) }),
          preset ("Square Wave", "Dirty,Effects,Loud", "So much gain that every sound turns into a square.",
                  { oversampled (x16), drive (18), linked (single, hard, -18), clip (post, hard, -6) }),
          preset ("Mismatched Amps", "Dirty,Effects,Stereo",
                  "A stiff transistor stage on the left, a soft one on the right.",
                  { oversampled (x8), drive (8), layout (leftRight), clip (left, hard, -9, 0, 6),
                    clip (right, softII, -4), clip (post, softI, -3, 0.3) }),
          preset ("Side Fuzz", "Dirty,Effects,Stereo",
                  "The middle stays clean while the sides turn into fuzz.",
                  { oversampled (x8), layout (midSide), off (mid), clip (side, hard, -18, 0, 6),
                    clip (post, softI, -4, 0.3) }),
          preset ("Fuzzy Sub", "Bands,Dirty,Effects",
                  "Squares off the lowest band alone for a bottom that can be heard anywhere.",
                  { oversampled (x2), bands (160, 3500), clip (low, hard, -18, 0, 8), off (middle),
                    off (high), clip (post, softI, -4, 0.3) }),
          preset ("Digital Clip", "Dirty,Effects,Loud",
                  "Bare clipping without oversampling, with all the aliasing of an early converter.",
                  { drive (12), linked (single, hard, -6), clip (post, hard, -3) }),
          preset ("Shattered Air", "Bands,Bright,Dirty,Effects",
                  "Breaks up everything above the voice and lays it over a rounded body.",
                  { oversampled (x2), drive (9), bands (250, 2500), off (low), clip (middle, softI, -6, 0.5),
                    clip (high, hard, -18, 0, 6), clip (post, softI, -3, 0.4) }) }
    };
}
} // namespace

const std::vector<Folder>& getFolders()
{
    static const std::vector<Folder> folders { makeDrums(),  makeBass(),   makeVocals(),    makeGuitars(),
                                               makeSynths(), makeMixBus(), makeMastering(), makeCreative() };
    return folders;
}

} // namespace factoryBank
