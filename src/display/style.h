// The display's reading of the settings: colours, widths, fonts and
// switches by their keys. A key that the settings table does not hold (yet)
// reads as the default given here, so drawing never fails on a missing key.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

double Setting_Num(const Session& s, std::string_view key, double def);
int32_t Setting_Int(const Session& s, std::string_view key, int32_t def);
std::string Setting_Text(const Session& s, std::string_view key, std::string_view def);
// Stores a number; a key the table does not hold is left alone.
void Store_Setting(Session& s, std::string_view key, double value);

// A colour 0xBBGGRR; a value outside 0 .. 0xFFFFFF falls back to `def`
// unless only its top byte is set.
int32_t Setting_Colour(const Session& s, std::string_view key, int32_t def);

// Font of the display by the stem of its keys: "DISP AXFONT" reads
// "DISP AXFONT NAME", "... SIZE", "... BOLD", "... ITAL".
Font_Rec Setting_Font(const Session& s, std::string_view stem, float def_size);

// The face that stands for the system's Japanese gothic face.
inline constexpr const char* Gothic_Face = "ＭＳ ゴシック";

}  // namespace tevo::display
