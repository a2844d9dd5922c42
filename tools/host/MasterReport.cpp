#include "MasterReport.h"

#include "AudioFile.h"
#include "Failure.h"

#include <cmath>

namespace
{
constexpr auto width = Outline::numColumns;
constexpr auto waveHeight = 120.0;
constexpr auto loudnessHeight = 90.0;

/** The span of loudness that is drawn, in LUFS. */
constexpr auto quietest = -45.0, loudest = 0.0;

constexpr auto style =
    "body{font:15px/1.45 system-ui,sans-serif;color:#d5d9de;background:#16191d;max-width:60em;margin:2em "
    "auto;"
    "padding:0 1em}h1,h2{font-weight:600}h2{font-size:1.1em;margin:2em 0 .4em}table{border-collapse:collapse;"
    "width:100%}td,th{padding:.25em .6em;text-align:right;border-bottom:1px solid #3a4048}td:first-child,"
    "th:first-child{text-align:left}.bad{color:#ff8a70}svg{display:block;width:100%;background:#1f2328;"
    "margin:.4em "
    "0}.before{fill:#8c96a3;stroke:#8c96a3}.after{fill:#e8853a;stroke:#e8853a}path.line{fill:none;"
    "stroke-width:1.5}.grid{stroke:#3a4048}text{fill:#8c96a3;font-size:10px}code{color:#e8a870}";

juce::String escaped (const juce::String& text)
{
    return text.replace ("&", "&amp;").replace ("<", "&lt;").replace (">", "&gt;").replace ("\"", "&quot;");
}

juce::String cell (const juce::String& text, const char* kind = "td")
{
    return "<" + juce::String (kind) + ">" + escaped (text) + "</" + kind + ">";
}

juce::String coordinates (double x, double y)
{
    return juce::String (x, 1) + " " + juce::String (y, 1) + " ";
}

/** Up along the highest samples and back along the lowest. */
juce::String waveform (const Outline& outline, const char* kind)
{
    const auto y = [] (float sample)
    { return waveHeight / 2.0 - juce::jlimit (-1.0, 1.0, static_cast<double> (sample)) * waveHeight / 2.0; };

    juce::String path;
    const auto& columns = outline.getColumns();
    for (auto i = 0; i < width; ++i)
        path << (i == 0 ? "M" : "L") << coordinates (i, y (columns[static_cast<size_t> (i)].highest));
    for (auto i = width - 1; i >= 0; --i)
        path << "L" << coordinates (i, y (columns[static_cast<size_t> (i)].lowest));

    return "<svg viewBox=\"0 0 " + juce::String (width) + " " + juce::String (waveHeight)
           + "\"><path class=\"" + kind + "\" stroke-width=\".5\" d=\"" + path + "Z\"/></svg>\n";
}

double loudnessY (double level)
{
    return (loudest - juce::jlimit (quietest, loudest, level)) / (loudest - quietest) * loudnessHeight;
}

juce::String loudnessLine (const std::vector<double>& levels, const char* kind)
{
    juce::String path;
    auto isDown = false;

    for (size_t i = 0; i < levels.size(); ++i)
    {
        const auto isLevel = std::isfinite (levels[i]);
        if (isLevel)
            path << (isDown ? "L" : "M")
                 << coordinates (static_cast<double> (i + 1) * width / static_cast<double> (levels.size()),
                                 loudnessY (levels[i]));
        isDown = isLevel;
    }

    return "<path class=\"line " + juce::String (kind) + "\" d=\"" + path + "\"/>";
}

juce::String loudnessOverTime (const MasterOrder& order, const MasterResult& result)
{
    juce::String svg ("<svg viewBox=\"0 0 " + juce::String (width) + " " + juce::String (loudnessHeight)
                      + "\">");

    for (const auto level : { -10.0, -20.0, -30.0, -40.0 })
        svg << "<path class=\"grid\" d=\"M0 " << loudnessY (level) << "H" << width << "\"/><text x=\"3\" y=\""
            << loudnessY (level) - 2.0 << "\">" << juce::roundToInt (level) << " LUFS</text>";

    svg << "<path class=\"grid\" stroke-dasharray=\"4\" d=\"M0 " << loudnessY (order.target) << "H" << width
        << "\"/>" << loudnessLine (result.before.shortTermEachSecond, "before")
        << loudnessLine (result.after.shortTermEachSecond, "after");
    return svg + "</svg>\n";
}

juce::String row (const MasterOrder& order, const MasterResult& result)
{
    const auto name = cell (result.job.input.getFileName());

    if (result.error.isNotEmpty())
        return "<tr>" + name + "<td class=\"bad\" colspan=\"8\">" + escaped (result.error) + "</td></tr>\n";

    auto text =
        "<tr>" + name + cell (juce::String (result.gains.input)) + cell (juce::String (result.makeup, 1));
    for (const auto value : { result.before.integrated, result.after.integrated, result.after.range,
                              result.after.shortTerm, result.after.truePeak })
        text << cell (levelText (value));

    return text
           + (result.isReached ? cell (result.isWritten ? "written" : "not written")
                               : "<td class=\"bad\">" + escaped (order.whyMissed (result)) + "</td>")
           + "</tr>\n";
}

juce::String section (const MasterOrder& order, const MasterResult& result)
{
    auto text = "<h2>" + escaped (result.job.input.getFileName())
                + "</h2>\n<p>Before and after, then the loudness of "
                + "three seconds over time; the broken line is the target.</p>\n"
                + waveform (result.before.outline, "before") + waveform (result.after.outline, "after")
                + loudnessOverTime (order, result);

    for (const auto& over : result.overs)
        text << "<p class=\"bad\">" << levelText (over.level, 2) << " dBTP at "
             << juce::String (over.seconds, 2) << " s, for " << juce::roundToInt (1000.0 * over.length)
             << " ms</p>\n";

    return text;
}

juce::String page (const MasterOrder& order, const std::vector<MasterResult>& results)
{
    juce::String text (
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Mastered with Orvo"
        "</title><style>");
    text << style << "</style></head><body>\n<h1>Mastered with Orvo " << escaped (order.version)
         << "</h1>\n<p>" << (order.isAlbum ? "As an album, " : "Each file ") << "to "
         << levelText (order.target) << " LUFS";
    if (std::isfinite (order.peakLimit))
        text << ", true peaks above " << levelText (order.peakLimit) << " dBTP told";
    text << ". Settings: <code>"
         << escaped (order.settings.isEmpty() ? "defaults" : order.settings.joinIntoString (" "))
         << "</code></p>\n<table><tr>";

    for (const auto* title :
         { "File", "In gain", "Makeup", "LUFS before", "LUFS after", "Range", "Short term", "dBTP", "" })
        text << cell (title, "th");
    text << "</tr>\n";

    for (const auto& result : results)
        text << row (order, result);
    text << "</table>\n";

    for (const auto& result : results)
        if (result.error.isEmpty())
            text << section (order, result);

    return text + "</body></html>\n";
}
} // namespace

juce::File reportFileFrom (const juce::String& name, bool mayReplace)
{
    if (name.isEmpty())
        return {};

    const auto file = fileFromOperand (name);
    if (file.isDirectory() || ! file.getParentDirectory().isDirectory())
        throw Failure (file.getFullPathName() + ": no file can be there");

    if (file.exists() && ! mayReplace)
        throw Failure (file.getFullPathName() + ": exists already; --force replaces it");

    return file;
}

void writeReport (const juce::File& file, const MasterOrder& order, const std::vector<MasterResult>& results,
                  bool mayReplace)
{
    const juce::TemporaryFile unfinished (file, unfinishedFileFor (file));

    if (! unfinished.getFile().replaceWithText (page (order, results), false, false, "\n"))
        throw Failure (file.getFullPathName() + ": cannot be written");

    moveIntoPlace (unfinished.getFile(), file, mayReplace);
}
