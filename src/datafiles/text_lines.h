// The one line reader of every text format the program reads.
#pragma once

#include <cstddef>
#include <istream>
#include <string>

#include "datafiles/decoders.h"

namespace tevo::datafiles {

// Reads the next line: bytes below 32 in front of it are skipped (so blank
// lines and the LF of a CR LF pair vanish), and CR or LF ends it. A Shift-JIS
// lead byte takes its trail byte with it whatever that byte is; the bytes
// 253..255 are dropped. The line is left in Shift-JIS bytes (ASCII
// text is the same in UTF-8; convert fields with Sjis_To_Utf8).
// Returns false, with `line` empty, at the end of the input.
bool Read_Line_Any(std::istream& in, std::string& line);

// The same over bytes in memory; `pos` moves past the line.
bool Read_Line_Any(Byte_View bytes, size_t& pos, std::string& line);

}  // namespace tevo::datafiles
