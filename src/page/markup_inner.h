// The reader of one command of inner notation, shared by the pen, the line
// height scan and the converters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "page/markup.h"

namespace tevo::page {

struct Inner_Command {
  enum Kind {
    Backslash,  // "\\"
    Byte,  // "\'hh"
    Start,  // "\<"
    End,  // "\>"
    Switch,  // "\i1", "\b0", "\+1", "\g1", ...
    Face,  // "\f:name:"
    Face_Reset,  // "\f0"
    Size,  // "\p:size:"
    Size_Reset,  // "\p0"
    Colour,  // "\c:hex:"
    Colour_Reset,  // "\c0"
    Tab,  // "\tb"
    New_Line,  // "\cr"
    Unknown,
  };
  Kind kind = Unknown;
  char letter = 0;  // Switch: i b u s g + -
  bool on = false;  // Switch
  std::string arg;  // Face, Size, Colour
  unsigned char byte = 0;  // Byte
  std::size_t next = 0;  // index after the command and its blank
};

// Value of a hex digit, -1 for any other character.
inline int Hex_Digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Reads the command at t[i] == '\\'.
Inner_Command Parse_Inner_Command(std::string_view t, std::size_t i);

// Digits and "." of a "\p:" argument as points (0 when there are none).
double Parse_Size(std::string_view arg);
// Hex digits of a "\c:" argument as 0xBBGGRR; other characters are skipped.
Colour Parse_Colour(std::string_view arg);

// Bytes of the code page of font as text: Symbol codes and Latin bytes one
// character each, otherwise Shift-JIS. Control bytes are dropped.
std::string Bytes_As_Text(std::string_view bytes, const Font_Rec& font);

}  // namespace tevo::page
