// The Symbol font's code page: Greek letters and mathematical signs on the
// byte codes of Latin letters and punctuation ("a" is alpha, "m" is mu).
// Text in a Symbol font carries these codes as the characters U+0020..U+00FF;
// a surface shows them through this mapping with any face that has the
// Unicode glyphs.
#pragma once

#include <string>
#include <string_view>

#include "session/records.h"

namespace tevo::platform {

// True when the font draws Symbol codes: charset 2, or the face "Symbol".
bool Is_Symbol_Font(const Font_Rec& font);

// The Unicode character of a Symbol code; codes outside 0x20..0xFF and
// codes the font leaves empty come back unchanged.
char32_t Symbol_To_Unicode(char32_t code);

// A whole text of Symbol codes (UTF-8) as Unicode text (UTF-8).
std::string Symbol_Text_To_Unicode(std::string_view text);

}  // namespace tevo::platform
