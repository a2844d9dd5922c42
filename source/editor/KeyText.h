#pragma once

#include <string>

namespace tessarin
{

/** What keys type, whatever the host's locale is.

    The X library gives a key's text in the character set of the process's locale, and JUCE reads it as UTF-8. A host
    need not have set a locale, and it is not ours to set, so the text comes from the key's symbol instead. Message
    thread.
*/
namespace KeyText
{

/** Makes JUCE ask here. Again for every window: JUCE forgets it when the last plug-in of the process is gone. */
void becomeJucesSource();

/** In UTF-8; empty for keys that type nothing, and for symbols that no table knows.
    Symbols of 0x01000100 and above are characters by their number; older ones hold a table in their second byte, and
    the character in it in their first (X protocol, appendix on keysyms). */
[[nodiscard]] std::string textOf (unsigned long symbol);

} // namespace KeyText

} // namespace tessarin
