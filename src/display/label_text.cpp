#include "display/label_text.h"

#include "page/markup.h"

namespace tevo::display {

namespace {

int Weight(const Font_Rec& f) { return f.Bold ? 700 : 400; }

}  // namespace

double Font_Pixels(const Font_Rec& font, double pixel_per_point) {
  return font.Size * pixel_per_point;
}

int Text_Height(platform::Surface& surf, std::string_view text, const Font_Rec& font,
                double pixel_per_point) {
  return static_cast<int>(
      page::Measure_Text(surf, text, font, pixel_per_point, Weight(font)).Text_H + 0.5);
}

Label_Size Measure_Label(platform::Surface& surf, std::string_view text, const Font_Rec& font,
                         double pixel_per_point) {
  const double w = page::Measure_Markup(surf, text, font, pixel_per_point, Weight(font));
  const double h = page::Line_Height(text, 0, font, pixel_per_point);
  return {static_cast<int>(w + 0.5), static_cast<int>(h + 0.5)};
}

void Draw_Label(platform::Surface& surf, int x, int y, std::string_view text, const Font_Rec& font,
                platform::Colour colour, double pixel_per_point, int angle_degrees) {
  surf.Set_Background_Mode(platform::Background_Mode::Transparent);
  page::Draw_Markup(surf, 1, text, x, y, angle_degrees, colour, 0, 0, font, pixel_per_point,
                    Weight(font));
}

}  // namespace tevo::display
