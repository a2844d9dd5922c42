#pragma once

#include <juce_graphics/juce_graphics.h>

/** Themes are small JSON documents with named variables and sections of colour keys; those of `embeddedThemeNames`
    are compiled in. */
namespace tessarin::ThemeResolver
{
/** The document of an embedded theme; void for any other name. */
[[nodiscard]] juce::var parseEmbeddedTheme (const juce::String& name);

/** The names of the embedded themes, in the order in which they are cycled. */
[[nodiscard]] const juce::StringArray& getEmbeddedThemeNames();

/** Resolves a path such as "background.panel". A value is six hexadecimal digits, or "$" and a variable's
    name, which may be followed by a blank, "brighter" or "darker", and another blank and the amount.

    Never fails: a fault is logged and has a colour of its own. Yellow: no colours; green: unknown key; red:
    no variables; blue: unknown variable; orange: a malformed literal.
*/
[[nodiscard]] juce::Colour getColour (const juce::var& theme, const juce::String& path);

} // namespace tessarin::ThemeResolver
