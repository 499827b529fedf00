#include "display/style.h"

#include <cmath>

#include "session/session.h"

namespace tevo::display {

double Setting_Num(const Session& s, std::string_view key, double def) {
  if (session::Setting_Index(key) < 0) return def;
  return s.settings.Real(key);
}

int32_t Setting_Int(const Session& s, std::string_view key, int32_t def) {
  if (session::Setting_Index(key) < 0) return def;
  return s.settings.Int(key);
}

std::string Setting_Text(const Session& s, std::string_view key, std::string_view def) {
  if (session::Setting_Index(key) < 0) return std::string(def);
  return s.settings.Text(key);
}

void Store_Setting(Session& s, std::string_view key, double value) {
  if (session::Setting_Index(key) < 0) return;
  s.settings.Set(key, value);
}

int32_t Setting_Colour(const Session& s, std::string_view key, int32_t def) {
  const double v = Setting_Num(s, key, def);
  if (v >= 0 && v <= 0xFFFFFF) return static_cast<int32_t>(v);
  // A value with only the top byte set (a system colour) keeps its low bits.
  const int64_t iv = static_cast<int64_t>(v);
  if (iv > 0xFFFFFF && iv <= 0xFFFFFFFFLL) return static_cast<int32_t>(iv & 0xFFFFFF);
  return def;
}

Font_Rec Setting_Font(const Session& s, std::string_view stem, float def_size) {
  const std::string k(stem);
  Font_Rec f;
  f.Face = Setting_Text(s, k + " NAME", Gothic_Face);
  if (f.Face.empty()) f.Face = Gothic_Face;
  f.Size = static_cast<float>(Setting_Num(s, k + " SIZE", def_size));
  if (!(f.Size > 0)) f.Size = def_size;
  f.Bold = static_cast<int16_t>(Setting_Int(s, k + " BOLD", 0));
  f.Italic = static_cast<int16_t>(Setting_Int(s, k + " ITAL", 0));
  f.Charset = 128;
  return f;
}

}  // namespace tevo::display
