#include "page/page_model.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "display/plot_geometry.h"
#include "display/style.h"
#include "page/fonts.h"
#include "session/messages.h"
#include "session/session.h"

namespace tevo::page {

using display::Round_Pixel;
using display::Setting_Colour;
using display::Setting_Int;
using display::Setting_Num;

const std::vector<Paper>& Paper_Table() {
  static const std::vector<Paper> table = {
      {8, "A3", 297, 420},         {9, "A4", 210, 297},         {10, "A4(small)", 210, 297},
      {11, "A5", 148, 210},        {12, "B4", 250, 354},        {13, "B5", 182, 257},
      {101, "A4 Half", 58.7, 83},  {102, "A4 Full", 123.8, 175},
  };
  return table;
}

namespace {

const Paper& Paper_Of(int code) {
  for (const Paper& p : Paper_Table())
    if (p.Code == code) return p;
  return Paper_Table()[1];
}

std::string Lower(std::string_view t) {
  std::string out(t);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

// A length as the captions write it: no trailing zeros.
std::string Length_Text(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.2f", v);
  std::string t = buf;
  while (t.back() == '0') t.pop_back();
  if (t.back() == '.') t.pop_back();
  return t;
}

}  // namespace

std::string Paper_Size(int code, int orient, double& height, double& width, bool in_cm) {
  const Paper& p = Paper_Of(code);
  const double k = in_cm ? 0.1 : 1.0;
  width = p.Width_mm * k;
  height = p.Height_mm * k;
  if (orient == 1) std::swap(width, height);
  return p.Name;
}

std::string Paper_Text(int code, int orient, bool in_cm) {
  double h = 0, w = 0;
  const std::string name = Paper_Size(code, orient, h, w, in_cm);
  return name + (orient == 1 ? " 横 " : " 縦 ") + Length_Text(w) + "x" + Length_Text(h) +
         (in_cm ? " cm" : " mm");
}

int Paper_Code(std::string_view name) {
  std::string n = Lower(name);
  if (n.size() > 7 && n.compare(n.size() - 7, 7, " column") == 0) n.resize(n.size() - 7);
  for (const Paper& p : Paper_Table())
    if (Lower(p.Name) == n) return p.Code;
  return -1;
}

Page_Setup Read_Page_Setup(const Session& s) {
  Page_Setup p;
  p.Paper_Code = static_cast<int16_t>(Setting_Int(s, "PAPER SIZE", 9));
  p.Orient = static_cast<int16_t>(Setting_Int(s, "PAPER ORIENT", 0));
  Paper_Size(p.Paper_Code, p.Orient, p.Paper_Height, p.Paper_Width, true);
  p.X_Length = Setting_Num(s, "X-LENGTH", 32);
  p.Y_Length = Setting_Num(s, "Y-LENGTH", 25);
  p.X_Left_Margin = Setting_Num(s, "X-LEFT MARGIN", 1);
  p.Y_Bottom_Margin = Setting_Num(s, "Y-BOTTOM MARGIN", 2);
  p.Y_Bias = Setting_Num(s, "Y-BIAS", 2);
  p.Y_Level = Setting_Num(s, "Y-LEVEL", 0.5);
  p.Para_Left = Setting_Num(s, "PARA LEFT", 1);
  p.Para_Top = Setting_Num(s, "PARA TOP", 2);
  p.Para_Width = Setting_Num(s, "PARA WIDTH", 12.8);
  p.Para_Height = Setting_Num(s, "PARA HEIGHT", 25);
  p.Paper_Colour = Setting_Colour(s, "PAPER COLOR", 0xFFFFFF);
  p.Frame_Colour = Setting_Colour(s, "WAKU COL", 0);
  p.Frame_Fill = Setting_Colour(s, "COL BG PRINT", 0xFFFFFF);
  return p;
}

Font_Rec Print_Font(const Session& s, const char* name_key, const char* size_key,
                    const char* bold_key, const char* italic_key, Font_Rec font) {
  if (std::string face = display::Setting_Text(s, name_key, ""); !face.empty()) font.Face = face;
  if (const double size = Setting_Num(s, size_key, 0); size > 0) font.Size = static_cast<float>(size);
  font.Bold = static_cast<int16_t>(Setting_Int(s, bold_key, font.Bold));
  font.Italic = static_cast<int16_t>(Setting_Int(s, italic_key, font.Italic));
  Check_Font(font);
  return font;
}

Page_Window Whole_Sheet(const Page_Setup& p) { return {0, p.Paper_Width, 0, p.Paper_Height}; }

int Sheet_Pixels(double cm, double dpi) { return Round_Pixel(cm / 2.54 * dpi); }

int Page_Geometry::X(double cm) const { return Round_Pixel(cm * Kx + Ox); }
int Page_Geometry::Y(double cm) const { return Round_Pixel(cm * Ky + Oy); }
int Page_Geometry::Frame_X(double fraction) const {
  return Round_Pixel(Frame.Left + fraction * (Frame.Right - Frame.Left));
}
int Page_Geometry::Frame_Y(double fraction) const {
  return Round_Pixel(Frame.Top + fraction * (Frame.Bottom - Frame.Top));
}
double Page_Geometry::Cm_X(double px) const { return (px - Ox) / Kx; }
double Page_Geometry::Cm_Y(double px) const { return (px - Oy) / Ky; }
double Page_Geometry::Frame_Fraction_X(double px) const {
  return Frame.Right == Frame.Left ? 0 : (px - Frame.Left) / (Frame.Right - Frame.Left);
}
double Page_Geometry::Frame_Fraction_Y(double px) const {
  return Frame.Bottom == Frame.Top ? 0 : (px - Frame.Top) / (Frame.Bottom - Frame.Top);
}
int Page_Geometry::Line_Width(double tenth_mm) const {
  return std::max(1, Round_Pixel(tenth_mm * 0.01 * Kx));
}

bool Page_Layout(const Page_Setup& p, int width, int height, const Page_Window& w,
                 Page_Geometry& g) {
  if (w.Right == w.Left || w.Bottom == w.Top) return false;
  g.Kx = width / (w.Right - w.Left);
  g.Ky = height / (w.Bottom - w.Top);
  g.Ox = -g.Kx * w.Left;
  g.Oy = -g.Ky * w.Top;
  g.Scale = g.Kx * 2.54 / 72.0;
  g.Sheet = {g.X(0), g.Y(0), g.X(p.Paper_Width), g.Y(p.Paper_Height)};
  // The frame counts up from the sheet's bottom edge.
  const double bottom = p.Paper_Height - p.Y_Bottom_Margin;
  g.Frame = {g.X(p.X_Left_Margin), g.Y(bottom - p.Y_Length), g.X(p.X_Left_Margin + p.X_Length),
             g.Y(bottom)};
  g.Zero_Y = g.Y(bottom - p.Y_Bias);
  g.Axis_Y = g.Y(bottom - p.Y_Level);
  g.Para = {g.X(p.Para_Left), g.Y(p.Para_Top), g.X(p.Para_Left + p.Para_Width),
            g.Y(p.Para_Top + p.Para_Height)};
  return true;
}

bool Page_Fits_Sheet(const Page_Setup& p) {
  constexpr double slack = 1e-6;
  auto inside = [&](double left, double top, double w, double h) {
    return left >= -slack && top >= -slack && w > 0 && h > 0 &&
           left + w <= p.Paper_Width + slack && top + h <= p.Paper_Height + slack;
  };
  return inside(p.X_Left_Margin, p.Paper_Height - p.Y_Bottom_Margin - p.Y_Length, p.X_Length,
                p.Y_Length) &&
         inside(p.Para_Left, p.Para_Top, p.Para_Width, p.Para_Height);
}

void Standard_Page_Places(Session& s) {
  const Page_Setup p = Read_Page_Setup(s);
  const double fw = p.Paper_Width - 3.0;
  const double fh = std::min(p.Paper_Height - 4.5, 0.7 * fw);
  const double bottom = 2.5;
  display::Store_Setting(s, "X-LEFT MARGIN", 1.5);
  display::Store_Setting(s, "X-LENGTH", fw);
  display::Store_Setting(s, "Y-BOTTOM MARGIN", bottom);
  display::Store_Setting(s, "Y-LENGTH", fh);
  const double free_top = p.Paper_Height - bottom - fh;  // cm above the frame
  if (free_top >= 4.0) {
    display::Store_Setting(s, "PARA LEFT", 1.5);
    display::Store_Setting(s, "PARA TOP", 1.5);
    display::Store_Setting(s, "PARA WIDTH", fw);
    display::Store_Setting(s, "PARA HEIGHT", free_top - 2.0);
  } else {
    display::Store_Setting(s, "PARA LEFT", 2.0);
    display::Store_Setting(s, "PARA TOP", free_top + 0.5);
    display::Store_Setting(s, "PARA WIDTH", 0.3 * fw);
    display::Store_Setting(s, "PARA HEIGHT", 0.45 * fh);
  }
  // The peak list in parts of the frame: its upper right, top counted up
  // from the frame's bottom.
  display::Store_Setting(s, "PEAK LIST LEFT", 0.72);
  display::Store_Setting(s, "PEAK LIST TOP", 0.97);
  display::Store_Setting(s, "PEAK LIST WIDTH", 0.26);
  display::Store_Setting(s, "PEAK LIST HEIGHT", 0.6);
}

Bitmap_Size Copy_Size(int w, int h) {
  w = std::abs(w), h = std::abs(h);
  if (w < 2 || h < 2) return {};
  const float aspect = static_cast<float>(h) / static_cast<float>(w);
  double width = w, height = h;
  if (w > Bitmap_Limit) {
    width = Bitmap_Limit;
    height = aspect * width;
  }
  if (height > Bitmap_Limit) {
    height = Bitmap_Limit;
    width = height / aspect;
  }
  return {Round_Pixel(width), Round_Pixel(height)};
}

Bitmap_Size Size_From_Width(int n, float aspect, int limit) {
  n = std::clamp(n, 1, limit);
  int other = Round_Pixel(n * static_cast<double>(aspect));
  if (other > limit) {
    other = limit;
    n = Round_Pixel(limit / static_cast<double>(aspect));
  }
  return {n, other};
}

Bitmap_Size Size_From_Height(int n, float aspect, int limit) {
  const Bitmap_Size turned = Size_From_Width(n, 1.0f / aspect, limit);
  return {turned.height, turned.width};
}

bool Keep_Page_On_Sheet(Session& s) {
  if (Page_Fits_Sheet(Read_Page_Setup(s))) return false;
  Standard_Page_Places(s);
  return true;
}

int Choose_Print_Orientation(Session& s, int printer_orient) {
  const int setting = Setting_Int(s, "PAPER ORIENT", 0) == 1 ? 1 : 0;
  if (printer_orient == setting) return setting;
  auto state = [](int orient) { return std::string(orient == 1 ? "横置" : "縦置"); };
  const int pick = s.ui->Choose("印刷方向",
                                "プリンター印刷方向と設定が異なります。\nプリンター: " + state(printer_orient) +
                                    "\n設定: " + state(setting),
                                {"プリンターの設定を使う", "ユーザー(現)の設定を使う"}, 1);
  if (pick < 0) return -1;
  if (pick == 1) return setting;
  display::Store_Setting(s, "PAPER ORIENT", printer_orient);
  return printer_orient;
}

int Check_Printer_Paper(Session& s, double printer_width_mm, double printer_height_mm) {
  const Page_Setup p = Read_Page_Setup(s);
  // Papers a hair apart (A4 against the driver's rounding) count as the same.
  constexpr double tolerance_mm = 2.0;
  if (std::fabs(printer_width_mm - p.Paper_Width * 10) <= tolerance_mm &&
      std::fabs(printer_height_mm - p.Paper_Height * 10) <= tolerance_mm)
    return 0;
  Show_Message(s, "プリンターの用紙と異なります。\nﾌﾟﾘﾝﾀｰを変更するか、用紙ｻｲｽﾞを変更してください",
               Style_OK | Icon_Exclamation, "ﾌﾟﾘﾝﾄｻｲｽﾞｴﾗｰ");
  return 1;
}

}  // namespace tevo::page
