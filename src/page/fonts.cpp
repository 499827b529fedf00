#include "page/fonts.h"

#include <algorithm>
#include <cctype>

namespace tevo::page {

namespace {

bool Same_Name(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) ==
                  std::tolower(static_cast<unsigned char>(y));
         });
}

Font_Setup Initial_Setup() {
  Font_Setup s;
  s.Font_Table = Named_Faces();
  return s;
}

}  // namespace

Font_Setup& Fonts() {
  static Font_Setup setup = Initial_Setup();
  return setup;
}

std::vector<Font_Face> Named_Faces() {
  return {
      {"ＭＳ ゴシック", Charset_Shift_Jis}, {"ＭＳ Ｐゴシック", Charset_Shift_Jis},
      {"ＭＳ 明朝", Charset_Shift_Jis},     {"ＭＳ Ｐ明朝", Charset_Shift_Jis},
      {"Arial", Charset_Ansi},              {"Times New Roman", Charset_Ansi},
      {"Courier New", Charset_Ansi},        {"Symbol", Charset_Symbol},
  };
}

void Set_Font_Table(std::vector<Font_Face> faces) {
  auto& s = Fonts();
  s.Font_Table = std::move(faces);
  s.Symbol_Face.clear();
  for (const auto& f : s.Font_Table)
    if (Same_Name(f.Name, "Symbol")) s.Symbol_Face = f.Name;
  if (s.Symbol_Face.empty())
    for (const auto& f : s.Font_Table)
      if (f.Charset == Charset_Ansi) {
        s.Symbol_Face = f.Name;
        break;
      }
}

const Font_Face* Find_Face(std::string_view name) {
  for (const auto& f : Fonts().Font_Table)
    if (Same_Name(f.Name, name)) return &f;
  return nullptr;
}

void Check_Font(Font_Rec& font) {
  if (font.Face.empty()) {
    font = Font_Rec{};
    font.Face = Fonts().Default_Font;
    font.Size = 10;
    font.Charset = Charset_Shift_Jis;
    return;
  }
  font.Size = font.Size >= 2.0f ? std::min(font.Size, 500.0f) : 2.0f;  // NaN too
  if (!Find_Face(font.Face)) {
    font.Face = font.Charset == Charset_Shift_Jis ? Fonts().Default_Font : Fonts().Latin_Font;
    font.Bold = 0;
    font.Italic = 0;
  }
}

}  // namespace tevo::page
