#include "display/caption_line.h"

#include <algorithm>

#include "display/style.h"
#include "session/command_flow.h"
#include "session/session.h"

namespace tevo::display {

std::string Caption_Line_Text(const Session& s) {
  std::string text = session::Window_Caption(s.Open_Name);
  if (!s.Param.COMNT.empty()) text += "  " + s.Param.COMNT;
  return text;
}

void Draw_Caption_Line(const Session& s, platform::Surface& surf) {
  Font_Rec font;
  font.Face = Gothic_Face;
  font.Size = 9;
  const double height = font.Size * surf.Pixels_Per_Point();
  const std::string text = Caption_Line_Text(s);
  const platform::Text_Size size = surf.Text_Extent(text, font, height);
  surf.Set_Raster_Op(platform::Raster_Op::Copy);
  surf.Set_Background_Mode(platform::Background_Mode::Transparent);
  surf.Set_Text_Colour(Setting_Colour(s, "DISP X-AXIS COL", 0));
  surf.Text_Out(std::max(2, surf.Width() - size.cx - 4), 2, text, font, height);
}

}  // namespace tevo::display
