#pragma once

#include <string>

/** What a key types, by its symbol alone.

    The X library gives a key's text in the character set of the process's locale. A host need not have set one, and it
    is not ours to set. Any thread.
*/
namespace tessarin::KeyText
{

/** In UTF-8; empty for keys that type nothing, and for symbols that no table knows, such as kana and Hangul, which
    input methods write. Symbols of 0x01000100 and above are characters by their number; older ones hold a table in
    their second byte, and the character in it in their first (X protocol, appendix on keysyms). */
[[nodiscard]] std::string textOf (unsigned long symbol);

} // namespace tessarin::KeyText
