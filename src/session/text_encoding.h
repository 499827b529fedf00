// The one conversion between the program's own strings (UTF-8) and the
// Shift-JIS (code page 932) text of every file it reads and writes.
#pragma once

#include <string>
#include <string_view>

namespace tevo {

// Shift-JIS bytes to UTF-8. Bytes that do not decode are kept as U+FFFD so a
// damaged file still reads.
std::string Sjis_To_Utf8(std::string_view sjis);

// UTF-8 to Shift-JIS bytes. Characters with no code in the code page become
// "?".
std::string Utf8_To_Sjis(std::string_view utf8);

// Length in Shift-JIS bytes of a UTF-8 string (what the fixed-width fields
// of the files count).
std::size_t Sjis_Length(std::string_view utf8);

// The character at s[i] of a UTF-8 string; i moves past it. A byte that
// starts no valid sequence stands for itself (as Latin-1) and moves one byte.
char32_t Next_Utf8(std::string_view s, std::size_t& i);
void Append_Utf8(std::string& out, char32_t c);

// Bytes of one character in Shift-JIS: 1 for ASCII, half-width katakana and
// characters the code page lacks (they become "?"), else 2.
int Sjis_Char_Bytes(char32_t c);

// True when b is a lead byte of a two-byte Shift-JIS character
// (129..159 or 224..252).
inline bool Is_Sjis_Lead(unsigned char b) { return (b >= 129 && b <= 159) || (b >= 224 && b <= 252); }

}  // namespace tevo
