#pragma once
// Code page 1252, the character set of every text the engine stores: its upper-case mapping (what
// CharUpperBuffA gave on the original system) and its mapping to UTF-16 for libraries that want
// Unicode.
#include <cstddef>
#include <string>
#include <string_view>

namespace verdal::cp1252 {

// Upper case of one 1252 character. Letters without an upper case in the code page (ß, µ, ƒ) stay.
char ToUpper(char c);

// Upper-cases a buffer in place.
void ToUpper(char* text, size_t length);
inline void ToUpper(std::string& text) { ToUpper(text.data(), text.size()); }

// The Unicode code point of a 1252 character. The five unassigned bytes map to the C1 controls of
// the same value, as the system's own conversion does.
char16_t ToUtf16(char c);

}  // namespace verdal::cp1252

namespace verdal::cp1252 {

// UTF-8 to code page 1252. A character the code page lacks becomes '?', and so does a byte that
// is no UTF-8; the result says whether everything had its own form.
bool FromUtf8(std::string_view utf8, std::string& out);

// Code page 1252 to UTF-8; every byte has a form.
void ToUtf8(std::string_view text, std::string& out);

// Whether the bytes are well-formed UTF-8 (plain ASCII is).
bool IsUtf8(std::string_view bytes);

}  // namespace verdal::cp1252
