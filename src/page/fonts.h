// The faces the system offers and the program-wide font choices every label
// falls back on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "session/records.h"

namespace tevo::page {

// Character sets of a face, as the font records carry them.
inline constexpr int16_t Charset_Ansi = 0;
inline constexpr int16_t Charset_Default = 1;  // whatever the face has
inline constexpr int16_t Charset_Symbol = 2;
inline constexpr int16_t Charset_Shift_Jis = 128;

struct Font_Face {
  std::string Name;
  int16_t Charset = Charset_Ansi;
};

struct Font_Setup {
  // All faces of the system with their charsets, probed at start by the
  // drawing back end. Until then it holds the faces the program itself names.
  std::vector<Font_Face> Font_Table;
  // "DEFAULT FONT": the Japanese face for double-byte text inside a Latin
  // font, and the default of a Japanese font record.
  std::string Default_Font = "ＭＳ ゴシック";
  // The default of a Latin font record.
  std::string Latin_Font = "Arial";
  // The face of Greek text: "Symbol" when the system has it, otherwise the
  // first ANSI face.
  std::string Symbol_Face = "Symbol";
  // Size of super- and subscript relative to the text.
  float Script_Ratio = 0.65f;
};

// The process-wide setup (one system, one set of fonts).
Font_Setup& Fonts();

// The faces the program names in its settings and texts, used before (and
// added to) the probe of the system: the Japanese faces, the Latin faces and
// Symbol.
std::vector<Font_Face> Named_Faces();

// Replaces the table and derives Symbol_Face from it.
void Set_Font_Table(std::vector<Font_Face> faces);

// The table entry of a face (case-insensitive), or nullptr.
const Font_Face* Find_Face(std::string_view name);

// Makes a font record usable: size clamped to 2 .. 500 points; a face
// missing from the table is replaced by the default of its charset
// (Default_Font for 128, Latin_Font otherwise) with bold and italic cleared;
// an empty face takes the whole default font (Default_Font, 10 points,
// regular, black, charset 128).
void Check_Font(Font_Rec& font);

}  // namespace tevo::page
