#include "display/label_text.h"

#include <cmath>
#include <string>

namespace tevo::display {

namespace {

// Until the markup renderer is wired in, labels lose their escapes: the
// font prefix "\< ", the superscript switches "\+1 " / "\+0 " and the
// Greek switches are removed (a Greek "d" becomes the delta) and the rest is
// drawn as one plain run.
std::string Plain(std::string_view text) {
  std::string out;
  bool greek = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      const char c = text[i + 1];
      if (c == 'g' && i + 3 < text.size() && text[i + 3] == ' ') {
        greek = text[i + 2] == '1';
        i += 3;
        continue;
      }
      if (c == '<') {
        i += (i + 2 < text.size() && text[i + 2] == ' ') ? 2 : 1;
        continue;
      }
      if (c == '+' && i + 3 < text.size() && text[i + 3] == ' ') {
        i += 3;
        continue;
      }
    }
    if (greek && text[i] == 'd')
      out += "\u03B4";
    else
      out += text[i];
  }
  return out;
}

int Weight(const Font_Rec& f) { return f.Bold ? 700 : 400; }

}  // namespace

double Font_Pixels(const Font_Rec& font, double pixel_per_point) {
  return font.Size * pixel_per_point;
}

Label_Size Measure_Label(platform::Surface& surf, std::string_view text, const Font_Rec& font,
                         double pixel_per_point) {
  const platform::Text_Size t =
      surf.Text_Extent(Plain(text), font, Font_Pixels(font, pixel_per_point), Weight(font));
  return {t.cx, t.cy};
}

void Draw_Label(platform::Surface& surf, int x, int y, std::string_view text, const Font_Rec& font,
                platform::Colour colour, double pixel_per_point, int angle_degrees) {
  surf.Set_Background_Mode(platform::Background_Mode::Transparent);
  surf.Set_Text_Colour(colour);
  surf.Text_Out(x, y, Plain(text), font, Font_Pixels(font, pixel_per_point), angle_degrees * 10,
                Weight(font));
}

}  // namespace tevo::display
