#pragma once

/** Identifiers in the look and feel's colour table. The theme fills the system's own first, and copies them
    to the widgets' after that; drawing code reads the table and never the theme. */
namespace luna::ColourIds
{
// The system's own.
inline constexpr int primaryColourId = 0x5000000;
inline constexpr int elementColourId = 0x5000001;
inline constexpr int elementBorderColourId = 0x5000002;
inline constexpr int disabledElementColourId = 0x5000003;
inline constexpr int disabledElementBorderColourId = 0x5000004;
inline constexpr int textColourId = 0x5000005;
inline constexpr int highlightedTextColourId = 0x5000006;
inline constexpr int disabledTextColourId = 0x5000007;
inline constexpr int backgroundColourId = 0x5000008;
inline constexpr int panelColourId = 0x5000009;
inline constexpr int warningColourId = 0x8000010;
inline constexpr int secondaryColourId = 0x8000017;
inline constexpr int tertiaryColourId = 0x8000018;
inline constexpr int pluginNameColourId = 0x8000053;
inline constexpr int sliderKnobColourId = 0x8000060;
inline constexpr int sliderRingColourId = 0x8000061;
inline constexpr int sliderDotColourId = 0x8000062;
inline constexpr int sliderTrackColourId = 0x8000063;
inline constexpr int sliderTrackBackgroundColourId = 0x8000064;
inline constexpr int correlationInPhaseColourId = 0x8000070;
inline constexpr int correlationOutOfPhaseColourId = 0x8000071;
inline constexpr int correlationMiddleColourId = 0x8000072;
inline constexpr int flockPredatorColourId = 0x8000080;
inline constexpr int pianoRollWhiteKeyColourId = 0x8000090;
inline constexpr int pianoRollBlackKeyColourId = 0x8000091;
inline constexpr int pianoRollWhiteRowColourId = 0x8000092;
inline constexpr int pianoRollBlackRowColourId = 0x8000093;

// The widgets'.
inline constexpr int graphBackgroundColourId = 0x2000000;
inline constexpr int graphGridTextColourId = 0x2000001;
inline constexpr int graphGridColourId = 0x2000002;
inline constexpr int graphLabelColourId = 0x2000003;
inline constexpr int toastErrorColourId = 0x2000020;
inline constexpr int toastSuccessColourId = 0x2000021;
inline constexpr int toastNoticeColourId = 0x2000022;
inline constexpr int toastTextColourId = 0x2000023;
inline constexpr int meterBackgroundColourId = 0x2000050;
inline constexpr int meterBarColourId = 0x2000051;
inline constexpr int meterHoldColourId = 0x2000052;
inline constexpr int meterOverColourId = 0x2000053;
inline constexpr int tooltipTextColourId = 0x2300030;
inline constexpr int panelFillColourId = 0x8000020;
inline constexpr int panelBorderColourId = 0x8000021;
} // namespace luna::ColourIds
